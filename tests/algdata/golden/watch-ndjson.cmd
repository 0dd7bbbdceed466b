. ./watching.sh
cp good/apRank.txt good/algOutput.txt $scratch
start $scratch
sed -i 's/ 2$/ 1/' $scratch/apRank.txt; shown 1
cat good/apRank.txt > $scratch/algOutput.txt; shown 7
rm $scratch/apRank.txt; shown 8
finish
