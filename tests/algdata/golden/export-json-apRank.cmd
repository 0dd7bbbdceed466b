algdata export good/apRank.txt
