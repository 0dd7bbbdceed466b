algdata export good/score.txt -f ndjson
