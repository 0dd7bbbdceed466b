algdata check damaged/unknown.txt
