algdata show good/apRank.txt good/bridging.txt --format markdown
