algdata export good/apAll.txt -f csv
