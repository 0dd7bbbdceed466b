# Refused because of its size, without reading it: reading would exceed the time limit below.
truncate -s 10G $scratch/large.txt
cp good/apRank.txt $scratch/rank.txt
timeout 5 algdata export $scratch -f ndjson --columns deviceMAC
echo "status $?"
# An endless input is refused after the limit was read.
timeout 60 algdata check /dev/zero
