# A second kind that is found late: standard output gets nothing, also when the rows of the first kind
# do not fit a buffer.
set -o pipefail
export TMPDIR=$scratch
mkdir $scratch/home $scratch/one
for i in $(seq 9000); do printf 'a4c3f000%04x a4c3f0000010 1\n' $i; done > $scratch/home/a.txt
cp $scratch/home/a.txt $scratch/one/a.txt
cp good/apRank.txt $scratch/one/b.txt
cp good/candidate.txt $scratch/home/z.txt
algdata export $scratch/home -f csv | wc -c
algdata export $scratch/home/a.txt $scratch/home/z.txt -f csv -o /dev/stdout | wc -c
cat $scratch/home/z.txt | algdata export $scratch/home/a.txt - -f csv --columns source | wc -c
echo "== one kind"
algdata export $scratch/one -f csv > $scratch/held.csv
algdata export $scratch/one -f csv --where kind=ap-rank > $scratch/direct.csv
cmp $scratch/held.csv $scratch/direct.csv
wc -l < $scratch/held.csv
ls -A $scratch
algdata export $scratch/one -f csv > /dev/full
echo "status $?"
TMPDIR=$scratch/none algdata export $scratch/one -f csv | wc -l
echo "status $?"
TMPDIR=$scratch/none algdata export good/apRank.txt good/apRank.txt -f csv | wc -l
