# A writer that empties a file and writes it in parts: only what differs in the end is shown.
. ./watching.sh
cp good/apRank.txt $scratch
start $scratch --format lines
{
    exec 5> $scratch/apRank.txt
    sleep 1.2
    head -c 40 good/apRank.txt >&5
    sleep 1.2
    tail -c +41 good/apRank.txt >&5
    echo "a4c3f00000ff 000000000000 3" >&5
    exec 5>&-
}
shown 1
finish
