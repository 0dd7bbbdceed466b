# A directory without a record file: nothing was read, which is not a good result.
mkdir $scratch/empty $scratch/hidden $scratch/others
cp good/apRank.txt $scratch/hidden/.backup.txt
ln -s $PWD/good $scratch/hidden/link
cp damaged/unknown.txt $scratch/others
for directory in empty hidden others; do
    for command in export show stats check 'export -f csv' 'check -f json'; do
        echo "== $command $directory"
        echo old > $scratch/result
        algdata $command $scratch/$directory 2>&1
        algdata $command $scratch/$directory -o $scratch/result 2> /dev/null
        echo "status $?, $(cat $scratch/result)"
    done
done
algdata export good -k scanning -f ndjson --columns rssi --head 1
algdata stats damaged/empty.txt $scratch/empty good/apRank.txt
echo "status $?"
mkdir $scratch/gone
(cd $scratch/gone && rmdir $scratch/gone && algdata check .)
