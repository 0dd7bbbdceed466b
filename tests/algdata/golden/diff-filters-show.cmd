# Filters select the differences to show; the counts and the exit status cover all differences.
sed -e '2s/..$/52/' -e '5s/..$/99/' -e 12d good/scanning.txt > "$scratch/scanning.txt"
echo 'a4c3f0000019 a4c3f0000012  1  44  50' >> "$scratch/scanning.txt"
for filter in '' '--head 1' '--head 0' '--where rssi>52' '--where rssi=52' '--where deviceMAC=a4c3f0000019' '--columns band' \
    '--columns kind' '--where kind=station' '--where plcRate=0'; do
    echo "== $filter"
    # shellcheck disable=SC2086
    algdata diff good/scanning.txt "$scratch/scanning.txt" $filter
    echo "status $?"
done
algdata diff good/scanning.txt "$scratch/scanning.txt" --head 1 --format csv
echo "status $?"
algdata diff good/scanning.txt "$scratch/scanning.txt" --where rssi=0 --format json
echo "status $?"
algdata diff good/scanning.txt "$scratch/scanning.txt" --sort rssi
