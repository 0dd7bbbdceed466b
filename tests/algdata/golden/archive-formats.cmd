# The files of an archive are read like those of a directory, whatever its format.
mkdir -p $scratch/fleet/h1 $scratch/fleet/h2 $scratch/fleet/.hidden
cp good/apRank.txt good/score.txt $scratch/fleet/h1
cp good/apRank.txt $scratch/fleet/h2
cp good/apRank.txt $scratch/fleet/.hidden
cp good/apRank.txt $scratch/fleet/.rank.txt
echo 'the fleet of November' > $scratch/fleet/readme
cd $scratch/fleet
tar --sort=name -cf ../fleet.tar .
tar --sort=name --format=posix -czf ../fleet.tar.gz .
tar --sort=name --format=v7 -czf ../FLEET.TGZ h1 h2 readme
tar --sort=name -c . | zstd -q > ../fleet.tar.zst
cp ../fleet.tar.zst ../fleet.tzst
python3 -m zipfile -c ../fleet.zip h1 h2 readme .hidden .rank.txt
python3 -m zipfile -c /dev/stdout h1 h2 readme | cat > ../piped.zip
for archive in fleet fleet.tar fleet.tar.gz FLEET.TGZ fleet.tar.zst fleet.tzst fleet.zip piped.zip; do
    echo "== $archive"
    algdata export ../$archive --kind ap-rank --columns deviceMAC,apRank -f csv --head 1 2>&1
    algdata check ../$archive 2>&1
    algdata stats ../$archive 2> /dev/null | cmp - <(algdata stats . 2> /dev/null) && echo "the same figures"
done
