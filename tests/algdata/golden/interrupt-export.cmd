mkfifo $scratch/endless
echo old > $scratch/out.json
algdata export $scratch/endless -o $scratch/out.json &
until [ -n "$(find $scratch -name ".algdata.*")" ]; do sleep 0.05; done
kill -TERM $!
wait $!
echo "status $?"
ls -A $scratch
cat $scratch/out.json
