algdata check damaged/apNodeTooMany.txt
