algdata show good/apRankIndex.txt
