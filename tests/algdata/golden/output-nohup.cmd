mkfifo $scratch/slow
trap '' HUP PIPE USR1
algdata export -f csv $scratch/slow -o $scratch/out.csv &
until ls -l /proc/$!/fd 2>/dev/null | grep -q "scratch/.*deleted\|scratch/.algdata"; do sleep 0.02; done
kill -HUP $!
kill -PIPE $!
kill -USR1 $!
timeout 10 cp good/apRank.txt $scratch/slow
wait $!
echo "status $?"
wc -l < $scratch/out.csv
