# The readers read a byte order mark as part of the first field. The loaded view shows the result.
for name in apRank station patV2 apRankIndex; do
    { printf '\357\273\277'; cat good/$name.txt; } > $scratch/$name.txt
    algdata check $scratch/$name.txt
done
printf '\357\273\277' > $scratch/mark.txt
algdata check $scratch/mark.txt
for name in apRank station; do
    algdata show $scratch/$name.txt --view loaded
done
