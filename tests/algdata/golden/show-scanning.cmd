algdata show good/scanning.txt
