algdata export good/apNode.txt -f ndjson
