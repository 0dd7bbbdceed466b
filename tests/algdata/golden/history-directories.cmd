# Snapshots in natural order. A device that is missing in one of them has a gap, not a zero.
mkdir $scratch/s1 $scratch/s2 $scratch/s10; cp good/apRank.txt $scratch/s1; cd $scratch
sed 's/ 1$/ 0/' s1/apRank.txt > s2/apRank.txt; sed 2d s1/apRank.txt > s10/apRank.txt
algdata history . --field ap-rank.apRank
algdata history . --field ap-rank.apRank --format json
algdata history . --field ap-rank.apRank --format csv --head 2
algdata history . --field ap-rank.ethFatherMAC --format markdown
