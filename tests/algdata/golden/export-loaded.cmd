algdata export good/scanning.txt -f ndjson --view loaded --head 2
