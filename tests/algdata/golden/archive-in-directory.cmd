# Archives in a directory are read in their place; one without record files is no error there.
mkdir -p $scratch/fleet/a $scratch/fleet/z
cp good/apRank.txt $scratch/fleet/a
cp good/apRank.txt $scratch/fleet/z
cp damaged/apRankTwice.txt $scratch
echo 'no records' > $scratch/note
tar -cf $scratch/fleet/m.tar -C $scratch apRankTwice.txt
tar -cf $scratch/fleet/n.tar -C $scratch note
cd $scratch
algdata check fleet
algdata export fleet -f ndjson --columns deviceMAC --head 1
echo "status $?"
# Named, it has to have one.
algdata check fleet/n.tar
echo "status $?"
algdata check fleet/m.tar --kind score
echo "status $?"
# A directory can have the name of an archive.
mkdir fleet.zip && cp fleet/a/apRank.txt fleet.zip
algdata check fleet.zip
