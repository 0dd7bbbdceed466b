# A file that matches no kind is not a record file: it is counted in a directory and refused if named.
mkdir $scratch/data $scratch/new
cp good/station.txt $scratch/data
algdata export good/station.txt -f csv > $scratch/data/station.csv
algdata export good/station.txt > $scratch/data/station.json
cp damaged/unknown.txt $scratch/data/letter.txt
printf 'Nov 21 22:00:%02d router hostapd: wlan0: STA a4:c3:f0:00:00:10 IEEE 802.11: associated\n' {1..20} > $scratch/data/messages
printf '127.0.0.1 localhost\n::1 localhost ip6-localhost\n' > $scratch/data/hosts
printf '4 4 1 7\n' > $scratch/data/printk
printf '192.168.1.%d 0x1 0x2 a4:c3:f0:00:00:10 * br0\n' {1..9} > $scratch/data/arp
cp $scratch/data/station.txt $scratch/data/letter.txt $scratch/new
for command in "export $scratch/data -f ndjson --columns id" "show $scratch/data --columns id" "stats $scratch/data --columns id" \
    "check $scratch/data" "diff $scratch/data $scratch/new"; do
    echo "== $command"
    algdata $command 2>&1
    echo "status $?"
done
for name in station.csv messages printk; do
    for command in "export $scratch/data/$name" "show $scratch/data/$name" "stats $scratch/data/$name" \
        "check $scratch/data/$name" "diff $scratch/data/$name $scratch/data/station.txt"; do
        echo "== $command"
        algdata $command 2>&1
        echo "status $?"
    done
done
