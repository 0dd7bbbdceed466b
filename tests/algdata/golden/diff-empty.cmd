algdata diff damaged/empty.txt good/apRank.txt
