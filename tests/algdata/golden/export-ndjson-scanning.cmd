algdata export good/scanning.txt -f ndjson
