algdata export good/apRankIndex.txt
