echo old > $scratch/out.csv
algdata export good/apRank.txt good/candidate.txt -f csv -o $scratch/out.csv
echo "status $?, $(cat $scratch/out.csv)"
algdata export good/apRank.txt good/candidate.txt -f csv > $scratch/all.csv
echo "status $?, $(wc -c < $scratch/all.csv) bytes"
algdata export good -f csv --where kind=ap-rank
