algdata export good/apRank.txt -f csv
