one='export damaged/apRankTwice.txt damaged/apNodeNotANumber.txt --format ndjson --columns plcUtilization'
algdata $one -o $scratch/a 2>&- <&-
cat $scratch/a
algdata $one -o $scratch/a 2>&- >&- <&-
cat $scratch/a
algdata show good/apRank.txt >&-
algdata show - <&-
