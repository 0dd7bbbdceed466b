echo old > $scratch/one
ln $scratch/one $scratch/two
algdata export good/apRank.txt -o $scratch/one
echo "status $?"
cat $scratch/one $scratch/two
algdata export good/apRank.txt --format ndjson --head 1 > $scratch/one
cat $scratch/two
