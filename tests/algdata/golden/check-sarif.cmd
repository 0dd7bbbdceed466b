algdata check damaged/scanningMacs.txt --format sarif | grep -v '^{"id"'
