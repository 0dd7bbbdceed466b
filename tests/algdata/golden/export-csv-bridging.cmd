algdata export good/bridging.txt -f csv
