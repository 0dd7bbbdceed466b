algdata export good/apAll.txt -f ndjson
