# --limit N ends after N results of all files; --head N after N of each file.
for command in 'show --columns rssi' 'export -f ndjson --columns rssi' 'stats -f csv --columns rssi'; do
    for limit in '--limit 14' '--limit 14 --head 4' '--limit 0'; do
        echo "== $command $limit"
        algdata $command good/scanning.txt good/station.txt good/candidate.txt $limit
        echo "status $?"
    done
done
echo "== rows"
algdata check damaged/scanningMacs.txt damaged/timeDelayClamped.txt --limit 3
algdata check damaged/scanningMacs.txt damaged/timeDelayClamped.txt --limit 3 --head 2 -f csv --columns file,line
algdata check damaged/scanningMacs.txt --limit 0 -f json
algdata check --explain -f csv --columns rule --limit 2
algdata kinds --limit 2 -f csv --columns kind,field
algdata diff good damaged --limit 2
algdata diff good/scanning.txt damaged/scanningMacs.txt --limit 2
algdata diff good/scanning.txt damaged/scanningMacs.txt --limit 0 -f csv
echo "== no file after the limit is read"
algdata export good/apRank.txt damaged/unknown.txt -f csv --limit 1
echo "status $?"
algdata export good damaged -f csv --limit 1 | wc -l
for limit in x -1 '' 1.5 99999999999999999999; do
    algdata show good/apRank.txt --limit "$limit"
    echo "$? for --limit '$limit'"
done
