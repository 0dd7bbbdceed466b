algdata export good/timeDelay.txt -f ndjson
