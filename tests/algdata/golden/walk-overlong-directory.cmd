# After a path that is too long for the system, the walk continues with the other directories.
name=$(printf 'd%.0s' {1..250})
for side in old new; do
    mkdir -p $scratch/$side/a $scratch/$side/z
    cp good/apRank.txt $scratch/$side/a
    cp good/candidate.txt $scratch/$side/z
    (cd $scratch/$side && for _ in {1..20}; do mkdir $name && cd $name; done)
done
sed -i 's/ 319 / 320 /' $scratch/new/z/candidate.txt
for command in "export $scratch/new -f ndjson --columns kind,apMac,deviceMAC" "stats $scratch/new --columns apMac,apRank" \
    "check $scratch/new" "diff $scratch/old $scratch/new"; do
    echo "== $command"
    algdata $command 2>&1 | sed "s/d\{250\}/DIRECTORY/g; s|/DIRECTORY.*DIRECTORY:|/DIRECTORIES:|"
    echo "status ${PIPESTATUS[0]}"
done
