algdata import good/apRank.txt
