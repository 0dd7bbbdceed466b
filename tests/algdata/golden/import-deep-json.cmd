deep=$(printf '%100000s' '' | tr ' ' '[')
for text in "$deep" "{\"deviceMAC\":$deep" "[{\"colour\":${deep//[/{\"a\":}"; do
    echo "$text" | algdata import -k ap-rank -
    echo "status $?"
done
closed=$deep$(printf '%100000s' '' | tr ' ' ']')
echo "{\"deviceMAC\":\"a4c3f0000010\",\"ethFatherMAC\":\"000000000000\",\"apRank\":$closed}" | algdata import -k ap-rank -
echo "status $?"
