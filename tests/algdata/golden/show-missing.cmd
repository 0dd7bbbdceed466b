algdata show good/none.txt good/apRank.txt
