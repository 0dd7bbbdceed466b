# A record file is never replaced by a result that was made from it, whatever its names are.
cp good/apRank.txt $scratch/rank.txt
cp good/station.txt $scratch/station.csv
algdata export good/apRank.txt -o $scratch/rank.json
cd $scratch
ln -s rank.txt link
mkdir data
cp rank.txt data
sha256sum *.* data/* > sums
for command in 'export rank.txt' 'export ./rank.txt' 'export link' 'export rank.txt -f csv' 'show rank.txt' \
    'check rank.txt' 'stats rank.txt' 'diff data/rank.txt rank.txt' 'export -' 'export data rank.txt'; do
    algdata $command -o rank.txt < rank.txt
    echo "$command: status $?"
done
algdata export rank.txt -o link
algdata import -k ap-rank rank.json -o rank.json
algdata sql rank.txt 'SELECT 1' --format sqlite -o rank.txt
algdata export -f csv station.csv -o .
algdata export rank.txt -o /dev/stdout >> rank.txt
echo "== files of an input directory"
algdata export data -o data/rank.txt
algdata show . -o ../$(basename $scratch)/data/rank.txt
algdata diff data . -o data/rank.txt
algdata sql data 'SELECT 1' -o data/rank.txt
tar -cf data/home.tar rank.txt
algdata export data -o data/home.tar
rm data/home.tar
sha256sum -c --quiet sums && echo unchanged
echo "== other outputs in an input directory"
touch data/all.json
for time in first second; do
    algdata export data -o data/all.json
    algdata export data -f csv -o data/
    echo "$time: status $?"
done
ls data
