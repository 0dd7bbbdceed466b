algdata export good/station.txt -f ndjson
