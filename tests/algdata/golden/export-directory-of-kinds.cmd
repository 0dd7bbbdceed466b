algdata export good -f csv -o $scratch/csv/
algdata export good/apRank.txt damaged/apRankTwice.txt good/candidate.txt -f csv -o $scratch/csv --head 1
algdata export good -f ndjson -o $scratch/ndjson/ --where kind=ap-rank
algdata export good/apRank.txt -o $scratch/json/ --columns apRank
cd $scratch
ls -A
ls csv ndjson json
head -n 3 csv/ap-rank.csv csv/candidate.csv csv/score.csv
cat json/ap-rank.json
