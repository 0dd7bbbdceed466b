# An export is sorted over all its files, in every format. Kinds without the field are last.
files='good/scanning.txt good/station.txt good/apRank.txt good/candidate.txt'
for format in json ndjson; do
    algdata export $files -f $format --columns rssi --sort=-rssi --limit 7
done
algdata export $files -f ndjson --columns rssi,apRank --sort 'rssi DESC NULLS FIRST' --limit 4
algdata export $files -f ndjson --columns rssi --sort=-rssi --head 1
algdata export good -f csv -k scanning --columns source,rssi --sort rssi --limit 2
algdata export good damaged/scanningMacs.txt -f csv --where kind=scanning --columns source,rssi --sort=-rssi,-source --limit 4
algdata export $files --sort rssi --limit 0
algdata export good -f csv --where 'rssi > 300' --where kind=scanning --sort rssi
algdata export $files -o $scratch/all/ -f csv --sort=kind,-rssi --limit 9
wc -l $scratch/all/* | grep -v total
algdata export $files -f csv --sort rssi
echo "status $?"
echo "== the rows wait in a temporary file"
export TMPDIR=$scratch/tmp
mkdir $scratch/tmp
for i in $(seq 9000); do printf 'a4c3f000%04x a4c3f0000010 %d\n' $i $((i % 250)); done > $scratch/many.txt
algdata export $scratch/many.txt good/apRank.txt -f ndjson --sort=-apRank > $scratch/sorted.txt
echo "status $?, $(wc -l < $scratch/sorted.txt) records"
sed 's/.*"apRank"://; s/}//' $scratch/sorted.txt | sort -c -n -r && echo sorted
ls -A $scratch/tmp
TMPDIR=$scratch/none algdata export $scratch/many.txt good/apRank.txt -f ndjson --sort=-apRank | wc -l
algdata export $scratch/many.txt good/apRank.txt -f ndjson --sort=-apRank > /dev/full
echo "status $?"
