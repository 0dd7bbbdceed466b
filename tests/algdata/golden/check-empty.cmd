algdata check damaged/empty.txt
