algdata show good/scanning.txt --view loaded
