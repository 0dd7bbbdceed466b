# What is not field=value is an SQL expression over the columns of a CSV.
for where in 'rssi < 40 AND band IN (0, 1)' "neighbourMAC LIKE '%12'" "neighbourMAC = 'A4:C3:F0:00:00:12'" 'rssi BETWEEN 50 AND 55' \
    'rssi < channel' 'rssi==60' 'NOT rssi > 33 OR rssi > 56' '_line % 6 = 0' '_record = 3' "kind = 'scanning' AND rssi = (60)" \
    'rssi > 55 -- comment' '(rssi > 55 /* comment */)'; do
    echo "== $where"
    algdata export good/scanning.txt -f csv --columns neighbourMAC,band,channel,rssi --where "$where"
    echo "status $?"
done
echo "== several"
algdata export good/scanning.txt -f csv --where 'rssi < 40 OR rssi > 50' --where band=1 --where 'rssi > 31 -- last'
