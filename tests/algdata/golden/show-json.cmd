algdata show good/apRank.txt --format json
