algdata check damaged/scanningTooMany.txt
