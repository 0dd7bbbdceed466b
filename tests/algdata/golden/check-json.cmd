algdata check damaged/scanningMacs.txt --format json
