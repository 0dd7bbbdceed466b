algdata export good/bridging.txt -f ndjson
