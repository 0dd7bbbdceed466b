algdata export good/apRankIndex.txt -f csv
