algdata export good/apRank.txt good/candidate.txt -f csv
