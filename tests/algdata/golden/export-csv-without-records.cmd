# A CSV without records still has its header if all files are of one kind.
mkdir $scratch/home
cp good/scanning.txt good/station.txt good/apRank.txt $scratch/home
for arguments in "good/scanning.txt --where rssi>250" "good/scanning.txt --head 0 --columns kind,rssi" \
    "$scratch/home --where rssi>250 --where kind=station" "$scratch/home --where apRank=9" \
    "$scratch/home --where rssi>250" "damaged/empty.txt" "damaged/empty.txt -k scanning" "damaged/empty.txt -k pat-v2" \
    "good/scanning.txt good/scanning.txt --where rssi>250 --columns band"; do
    echo "== $arguments"
    algdata export -f csv $arguments
    echo "status $?"
done
algdata export good/scanning.txt -f csv --where 'rssi>250' | algdata import -k scanning --allow-empty - | wc -c
