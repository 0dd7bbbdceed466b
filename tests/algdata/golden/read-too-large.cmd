# Refused by its size: were it read, it would take longer than the time allowed here.
truncate -s 10G $scratch/large.txt
cp good/apRank.txt $scratch/rank.txt
timeout 5 algdata export $scratch -f ndjson --columns deviceMAC
echo "status $?"
# One without an end is refused when too much of it has been read.
timeout 60 algdata check /dev/zero
