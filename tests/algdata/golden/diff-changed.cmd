sed 's/ 2$/ 1/' good/apRank.txt > $scratch/rank.txt; algdata diff good/apRank.txt $scratch/rank.txt
