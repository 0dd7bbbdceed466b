. ./watching.sh
cp good/apRank.txt good/scanning.txt good/algOutput.txt $scratch
start $scratch --format lines
sed -i 's/ 2$/ 1/' $scratch/apRank.txt; shown 1
sed 1d $scratch/scanning.txt > $scratch/.new; mv $scratch/.new $scratch/scanning.txt; shown 2
mv $scratch/algOutput.txt $scratch/later.txt; shown 5
echo text > $scratch/notes.txt; rm $scratch/later.txt; shown 6
: > $scratch/apRank.txt
finish
