one='export good/apRank.txt --format ndjson --head 1'
umask 027
algdata $one -o $scratch/new.json
echo old > $scratch/old.json
chmod 2706 $scratch/old.json
algdata $one -o $scratch/old.json
cd $scratch
stat -c '%n %a' new.json old.json
head -c 20 old.json
