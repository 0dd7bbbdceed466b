algdata check damaged/scanningNoNewline.txt
