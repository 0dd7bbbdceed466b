one='export good/apRank.txt --format ndjson --head 1'
algdata $one -o /dev/stdout
echo
# A redirection keeps its file and the content that the file has.
echo before > $scratch/log
algdata $one -o /dev/stdout >> $scratch/log
algdata $one -o /dev/fd/3 3>> $scratch/log
algdata $one -o /proc/self/fd/3 3>> $scratch/log
ln -s /dev/stdout $scratch/link
algdata $one -o $scratch/link >> $scratch/log
cat $scratch/log
algdata $one -o /dev/null && test -c /dev/null && echo still a device
algdata $one -o /dev/full
algdata $one -o /dev/fd/9
mkfifo $scratch/pipe
cat $scratch/pipe &
algdata $one -o $scratch/pipe
wait
ls -A $scratch
