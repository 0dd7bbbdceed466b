echo good > $scratch/good.json
algdata export damaged/unknown.txt -o $scratch/good.json
echo "status $?, $(cat $scratch/good.json)"
algdata export good/apRank.txt damaged/unknown.txt -o $scratch/good.json
echo "status $?, $(cat $scratch/good.json)"
algdata export --view loaded damaged/apRankIndexTooMany.txt -o $scratch/good.json
echo "status $?, $(cat $scratch/good.json)"
