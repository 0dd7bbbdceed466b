# A large damaged file has more findings than memory: only the first of a rule are kept, but all are counted.
yes x | head -n 200000 > $scratch/many.txt
algdata check -k scanning $scratch/many.txt > $scratch/findings.txt
echo "status $?"
sed -n '1p; 10000p; $p' $scratch/findings.txt
algdata check -k scanning $scratch/many.txt --where 'line>9999'
algdata check -k scanning $scratch/many.txt --head 1 -f ndjson
