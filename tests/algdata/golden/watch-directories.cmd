# Directories that appear, are renamed and vanish, with their files.
. ./watching.sh
mkdir $scratch/old; cp good/apRank.txt $scratch/old
start $scratch --format lines --columns apRank
mkdir -p $scratch/new/deep; cp good/algOutput.txt $scratch/new/deep; shown 1
mv $scratch/new $scratch/other; shown 3
rm -r $scratch/old; shown 4
sed -i '1d' $scratch/other/deep/algOutput.txt; mv $scratch/other $scratch.away; shown 5
rm -r $scratch.away
finish
