# Damaged and missing values are gaps, and reported.
mkdir $scratch/1 $scratch/2 $scratch/3; cp good/apRank.txt $scratch/1; cp good/algOutput.txt $scratch/3; cd $scratch
sed 's/ 1$/ 999/; s/ 2$//' 1/apRank.txt > 2/apRank.txt
algdata history . --field ap-rank.apRank; echo $?
algdata history . --field ap-rank.apRank --format ndjson --head 1; echo $?
