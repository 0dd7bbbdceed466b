sed 's/ 45 / 46 /' good/bridging.txt > $scratch/i.txt; algdata diff good/bridging.txt $scratch/i.txt -f table
