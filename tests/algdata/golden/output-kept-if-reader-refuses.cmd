# The reader of one of the files refuses it, so the old output file stays.
for command in show stats export 'show -f markdown' 'stats -f csv' 'export -f csv'; do
    echo old > $scratch/good
    algdata $command --view loaded damaged/apRankBlankLine.txt -o $scratch/good
    echo "$command: status $?, $(cat $scratch/good)"
done
