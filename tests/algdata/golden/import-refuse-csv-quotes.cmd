for text in '"a4c3f0000010,000000000000,1' 'a4"c3f0000010,000000000000,1' '"a4c3f0000010"x,000000000000,1' \
    '"a4c3""f0000010",000000000000,1' '"a4c3f0000010","000000000000","1"' $'"a4c3\nf0000010",000000000000,1'; do
    printf 'deviceMAC,ethFatherMAC,apRank\r\n%s' "$text" | algdata import -k ap-rank -
    echo "status $?"
done
