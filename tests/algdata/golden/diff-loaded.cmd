sed '1s/ 95 / 99 /' damaged/apNodeClamped.txt > $scratch/n.txt; algdata diff damaged/apNodeClamped.txt $scratch/n.txt --view loaded && algdata diff damaged/apNodeClamped.txt $scratch/n.txt
