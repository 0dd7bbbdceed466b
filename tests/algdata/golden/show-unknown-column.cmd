algdata show good/apRank.txt --columns rank
