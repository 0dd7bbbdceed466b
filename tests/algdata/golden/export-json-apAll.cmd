algdata export good/apAll.txt
