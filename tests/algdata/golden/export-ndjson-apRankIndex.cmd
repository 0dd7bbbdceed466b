algdata export good/apRankIndex.txt -f ndjson
