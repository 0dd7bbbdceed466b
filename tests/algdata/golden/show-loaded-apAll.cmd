algdata show good/apAll.txt --view loaded
