# A file without records is valid: a home without stations has one.
mkdir $scratch/home
cp good/apRank.txt $scratch/home
: > $scratch/home/station.txt
: > $scratch/home/timeDelay.txt
for command in "show $scratch/home" "export $scratch/home -f ndjson" "stats $scratch/home" \
    "show $scratch/home/station.txt" "export $scratch/home/station.txt" \
    "export $scratch/home/station.txt --kind station" "export $scratch/home/station.txt --kind station -f ndjson" \
    "show $scratch/home/station.txt --kind station --columns rssi" "stats $scratch/home/station.txt" "export -"; do
    echo "== $command"
    algdata $command < /dev/null
    echo "status $?"
done
