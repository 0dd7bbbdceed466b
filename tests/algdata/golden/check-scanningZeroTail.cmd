algdata check damaged/scanningZeroTail.txt
