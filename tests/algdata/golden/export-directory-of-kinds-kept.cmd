mkdir $scratch/csv
echo old > $scratch/csv/ap-rank.csv
algdata export good/apRank.txt none.txt -f csv -o $scratch/csv/
echo "status $?"
algdata export good/apRank.txt -f csv -o $scratch/none/csv/
echo "status $?"
algdata export good/apRank.txt -f csv -o $scratch/csv/ap-rank.csv/
echo "status $?"
cat $scratch/csv/*
