sed 's/ 2$/ 1/; 1d' good/apRank.txt > $scratch/rank.txt; algdata diff good/apRank.txt $scratch/rank.txt --color always
