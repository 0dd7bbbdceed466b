algdata show good/apRank.txt --color always
