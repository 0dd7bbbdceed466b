algdata check damaged/apNodeOutOfRange.txt
