algdata show good/apAll.txt
