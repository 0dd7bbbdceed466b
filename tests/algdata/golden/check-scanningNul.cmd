algdata check damaged/scanningNul.txt
