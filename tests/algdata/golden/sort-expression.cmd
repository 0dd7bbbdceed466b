# --sort is an ORDER BY, too. Records that are equal keep their order.
for sort in 'rssi DESC' 'band DESC, rssi' 'rssi % 10, channel' 'abs(rssi - 45) LIMIT' 'rssi COLLATE nocase DESC NULLS FIRST' \
    "substr(neighbourMAC, 12) DESC" 'band = 1, -rssi' 'rssi DESC -- x'; do
    echo "== $sort"
    algdata export good/scanning.txt -f csv --head 4 --columns neighbourMAC,band,rssi --sort="$sort"
    echo "status $?"
done
for sort in 'rsi DESC' 'rssi LIMIT 1' 'rssi) x' 'count(*)' 'max(rssi)' '(SELECT 1)' 'row_number() OVER (ORDER BY rssi)' '9 DESC' 'rssi; DROP' 'rssi DES'; do
    algdata show good/scanning.txt --sort="$sort" > $scratch/out
    echo "$? for '$sort'"
    cat $scratch/out
done
algdata check damaged/scanningMacs.txt damaged/timeDelayClamped.txt --sort 'severity DESC, length(message)' --limit 4
