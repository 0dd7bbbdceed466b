algdata diff good/apRank.txt damaged/apRankTwice.txt
