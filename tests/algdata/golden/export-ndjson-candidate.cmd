algdata export good/candidate.txt -f ndjson
