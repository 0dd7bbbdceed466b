. ./watching.sh
for end in "rm -r" "mv -t $scratch/away"; do
    mkdir -p $scratch/data $scratch/away; cp good/apRank.txt $scratch/data
    start $scratch/data
    $end $scratch/data; wait_until has_ended
    finish
done
