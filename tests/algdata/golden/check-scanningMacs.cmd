algdata check damaged/scanningMacs.txt
