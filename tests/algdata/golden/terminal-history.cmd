# Bars on a terminal that shows UTF-8 only. A gap is a blank.
mkdir $scratch/1 $scratch/2 $scratch/3 $scratch/4
for i in 1 2 3 4; do echo "a4c3f0000013 000000000000 $((i * i))" > $scratch/$i/rank.txt; done
echo "a4c3f0000011 000000000000 7" | tee -a $scratch/1/rank.txt >> $scratch/4/rank.txt
for locale in C C.UTF-8; do
    LC_ALL=$locale script -qec "algdata history $scratch --field ap-rank.apRank --no-pager" /dev/null
done
