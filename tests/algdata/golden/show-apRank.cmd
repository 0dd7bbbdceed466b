algdata show good/apRank.txt
