ulimit -c 0
mkfifo $scratch/endless
for signal in TERM PIPE XFSZ USR1 ABRT ALRM; do
    echo old > $scratch/out.json
    algdata export $scratch/endless -o $scratch/out.json &
    # It waits for a writer of the pipe, with its output file open.
    until ls -l /proc/$!/fd | grep -q "scratch/.*deleted\|scratch/.algdata"; do sleep 0.02; done
    kill -$signal $!
    wait $! 2> /dev/null
    echo "$signal: status $(($? - 128 == $(kill -l $signal)))"
    ls -A $scratch
    cat $scratch/out.json
done 2> /dev/null
