algdata export good/patV1.txt -f csv
