algdata check damaged/scanningBinary.txt
