algdata export good/algOutput.txt -f csv
