algdata export good/scanning.txt
