algdata show good/apRankIndex.txt --view loaded
