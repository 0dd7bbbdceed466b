algdata show good/apRank.txt --view loaded
