# --kind on a directory: files of other kinds are left out and counted.
mkdir $scratch/data $scratch/new
cp good/apRank.txt good/candidate.txt good/station.txt damaged/unknown.txt $scratch/data
: > $scratch/data/empty.txt
cp $scratch/data/* $scratch/new
sed -i 's/ 2$/ 1/' $scratch/new/apRank.txt
sed -i 's/ 319 / 320 /' $scratch/new/candidate.txt
for command in "export $scratch/data -f ndjson" "stats $scratch/data" "check $scratch/data" "diff $scratch/data $scratch/new"; do
    echo "== $command"
    algdata $command --kind ap-rank 2>&1
    echo "status $?"
done
