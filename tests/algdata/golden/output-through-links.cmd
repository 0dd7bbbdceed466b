one='export good/apRank.txt --format ndjson --head 1'
mkdir $scratch/a $scratch/b
echo old > $scratch/b/old.json
ln -s ../b/old.json $scratch/a/one
ln -s one $scratch/a/two
ln -s ../b/new.json $scratch/a/dangling
ln -s loop $scratch/a/loop
algdata $one -o $scratch/a/two
algdata $one -o $scratch/a/dangling
algdata $one -o $scratch/a/loop
cd $scratch
for file in a/* b/*; do echo "$file $(readlink $file)"; done
head -c 20 b/old.json b/new.json
