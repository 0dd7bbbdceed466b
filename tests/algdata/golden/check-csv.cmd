algdata check damaged/scanningMacs.txt -f csv
