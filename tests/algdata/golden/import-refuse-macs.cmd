for mac in hello 4E+11 a4c3f000001 a4:c3:f0:00:00:10 a4c3f000001g '' A4C3F0000010 444444444444; do
    echo "[{\"deviceMAC\":\"$mac\",\"ethFatherMAC\":\"000000000000\",\"apRank\":1}]" | algdata import -k ap-rank -
    printf 'deviceMAC,ethFatherMAC,apRank\r\n%s,000000000000,1\r\n' "$mac" | algdata import -k ap-rank -
done
