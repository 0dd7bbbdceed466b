algdata stats good/apRankIndex.txt -f json
