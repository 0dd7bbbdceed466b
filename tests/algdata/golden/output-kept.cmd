for command in 'export' 'show' 'check' 'stats' 'export -f ndjson' 'export -f csv'; do
    echo old > $scratch/good
    algdata $command $scratch/none.txt good/apRank.txt -o $scratch/good
    echo "$command: status $?, $(cat $scratch/good)"
done
echo old > $scratch/good
algdata diff good/apRank.txt none.txt -o $scratch/good
cat $scratch/good
