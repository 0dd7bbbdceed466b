# A record of a kind with entries needs their list. An empty list is a list, and so is a row without a number.
device='"deviceMac":"a4c3f0000010"'
for text in "{$device}" "{$device,\"singlePat\":null}" "[{$device,\"singlePat\":[]},{$device,\"commonPatNum\":0}]" \
    "{$device,\"singlePat\":[]}" $'deviceMac\na4c3f0000010\n' $'deviceMac,commonPatNum\na4c3f0000010,0\n' \
    $'deviceMac,entry\na4c3f0000010,\n' $'deviceMac,entry\na4c3f0000010,0\n'; do
    echo "== $text"
    echo "$text" | algdata import -k pat-v2 - 2>&1
    echo "status $?"
done
for format in csv json; do
    algdata export good/patV2.txt -f $format --columns deviceMac | algdata import -k pat-v2 - -o $scratch/pat.txt
    echo "status $?, $(ls $scratch)"
done
