# A file that stops being a record file is compared with its last records when it is one again.
. ./watching.sh
cp good/apRank.txt $scratch
start $scratch --format lines
printf '\037\213 compressed' > $scratch/apRank.txt; wait_until grep -q apRank.txt $scratch.messages
sed 's/ 2$/ 1/' good/apRank.txt > $scratch/apRank.txt; shown 1
echo a4c3f0000077 >> $scratch/apRank.txt; shown 2
finish
