sed 's/ 1400$/ 1500/; s/^3 1 2/3 1 3/' good/apRankIndex.txt > $scratch/i.txt; algdata diff good/apRankIndex.txt $scratch/i.txt -f csv
