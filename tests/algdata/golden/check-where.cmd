algdata check damaged/scanningMacs.txt --where rule!=mac-short --sort=-line
