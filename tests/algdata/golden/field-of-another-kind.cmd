# A field that none of the files has is a mistake. In several files, one of them is enough.
for command in 'show --where apRank=0' 'show --where rssi.0=5' 'show --columns apRank' 'show --sort apRank' \
    'show --sort=-srcMAC' 'stats --columns apRank' 'export --where apRank=0 -f ndjson' 'check --where apRank=0'; do
    echo "== $command"
    algdata $command good/scanning.txt 2>&1
    echo "status $?"
done
mkdir $scratch/home $scratch/new
cp good/scanning.txt good/apRank.txt $scratch/home
cp good/scanning.txt good/apRank.txt $scratch/new
for command in "show --where apRank=0" "export --columns fatherMAC -f ndjson" "export --columns apRank -f ndjson" \
    "show --where apRank=1 --where rssi=1" "stats --sort plcRate"; do
    echo "== $command"
    algdata $command $scratch/home 2>&1
    echo "status $?"
done
for command in '--where plcRate=0' '--columns apRank'; do
    algdata diff $scratch/home $scratch/new $command
    echo "status $?"
done
algdata diff good/scanning.txt $scratch/new/scanning.txt --columns apRank
echo "status $?"
echo old > $scratch/good
algdata show good/scanning.txt damaged/empty.txt --sort apRank -o $scratch/good
echo "status $?, $(cat $scratch/good)"
algdata show good/scanning.txt good/apRank.txt --sort apRank --head 1
echo "status $?"
algdata show damaged/empty.txt --sort apRank
