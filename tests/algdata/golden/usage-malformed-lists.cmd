for columns in '' , 'rssi,' 'rssi,,band' 'rssi,rssi' 'rssi,band,rssi' 'rssi.1,rssi' 'rssi.5' 'band.1' 'rsi' 'chan' 'kind,kind'; do
    algdata export good/scanning.txt --columns "$columns"
    echo "$? for --columns '$columns'"
done
algdata export good/scanning.txt --kind scanning --columns plcRate
algdata export good/scanning.txt --columns rssi --columns rssi
for sort in '' - 'rssi,' 'rssi,-' '--rssi' 'rsi'; do
    algdata export good/scanning.txt --sort="$sort"
    echo "$? for --sort '$sort'"
done
for head in '' -1 +1 1.5 1e3 0x1 ' 1' '1 ' abc 18446744073709551616 99999999999999999999; do
    algdata export good/scanning.txt --head "$head"
    echo "$? for --head '$head'"
done
algdata export good/scanning.txt --head 0
algdata export good/apRank.txt --head 18446744073709551615 -f csv
