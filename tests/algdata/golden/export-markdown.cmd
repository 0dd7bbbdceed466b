algdata export good/apRank.txt -f markdown
