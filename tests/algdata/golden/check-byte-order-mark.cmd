# An editor's mark is part of the first field to the readers: the loaded view shows what they make of it.
for name in apRank station patV2 apRankIndex; do
    { printf '\357\273\277'; cat good/$name.txt; } > $scratch/$name.txt
    algdata check $scratch/$name.txt
done
printf '\357\273\277' > $scratch/mark.txt
algdata check $scratch/mark.txt
for name in apRank station; do
    algdata show $scratch/$name.txt --view loaded
done
