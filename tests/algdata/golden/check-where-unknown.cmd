algdata check damaged/scanningMacs.txt --where colour=red
