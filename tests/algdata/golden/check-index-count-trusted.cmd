# The reader returns cnt unbounded; the record has an array of 30 entries.
for count in 31 200 300; do
    sed "1s/^3 /$count /" good/apRankIndex.txt > $scratch/index.txt
    algdata check $scratch/index.txt
    algdata show $scratch/index.txt --view loaded --columns cnt
done
