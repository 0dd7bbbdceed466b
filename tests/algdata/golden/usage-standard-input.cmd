# A - is always standard input, which can be read once; ./- is a file or a directory of this name.
rank=$PWD/good/apRank.txt
for command in show stats export check diff; do
    echo "== $command"
    algdata $command - - < $rank
    echo "status $?"
done
mkdir -p $scratch/-
cp good/station.txt $scratch/-
cd $scratch
for command in 'show --head 1' 'stats' 'export -f ndjson --head 1' 'check'; do
    for path in - ./-; do
        echo "== $command $path"
        algdata $command $path < $rank
    done
done
algdata export -f csv --head 1 -o - - < $rank
algdata diff - $rank < $rank
algdata diff -- -/ ./-
