algdata import -k ap-rank good/apRank.txt
