algdata export good/apRank.txt -f csv --sort -apRank
