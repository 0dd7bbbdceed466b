echo '{"deviceMAC":"a4c3f0000010","ethFatherMAC":"000000000000","apRank":1,"deviceMAC":"a4c3f0000011"}' |
    algdata import -k ap-rank -
echo '{"kind":"ap-rank","kind":"ap-rank","source":"a","source":"b","deviceMAC":"a4c3f0000010","ethFatherMAC":"000000000000","apRank":1}' |
    algdata import -k ap-rank -
echo '{"deviceMac":"a4c3f0000010","singlePat":[{"isChanged":0,"bandOrder":0,"channelWidthOrder":1,"mcsOrder":0,"paraB":64,"paraC":46094,"paraB":65}],"singlePat":[]}' |
    algdata import -k pat-v2 -
printf 'deviceMAC,ethFatherMAC,apRank,apRank\na4c3f0000010,000000000000,1,2\n' | algdata import -k ap-rank -
echo "status $?"
