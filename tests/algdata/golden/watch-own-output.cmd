# The file of the output can be in the directory.
. ./watching.sh
cp good/apRank.txt $scratch
: > $scratch.messages
algdata watch $scratch > $scratch/log 2> $scratch.messages &
watch=$!
wait_until grep -q '^algdata: watching' $scratch.messages
sed -i 's/ 2$/ 1/' $scratch/apRank.txt; wait_until test -s $scratch/log
cp $scratch/log $scratch.changes
finish
