algdata export good/apNode.txt -f csv
