algdata export good/candidate.txt -f csv
