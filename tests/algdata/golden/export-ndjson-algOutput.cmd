algdata export good/algOutput.txt -f ndjson
