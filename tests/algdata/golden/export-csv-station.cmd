algdata export good/station.txt -f csv
