algdata export good/scanning.txt -f csv
