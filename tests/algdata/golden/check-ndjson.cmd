algdata check damaged/scanningMacs.txt -f ndjson --head 2
