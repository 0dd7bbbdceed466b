algdata export good/apRank.txt -f ndjson
