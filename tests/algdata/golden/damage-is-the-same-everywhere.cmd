# What check calls not-a-number or out-of-range is damage for show, export, stats, --where and import, too.
printf '0a4e00000004 0a4e00000005  2 300  26\n' > $scratch/range.txt
sed '1s/^\([^.]*\) [0-9]*\.[0-9]*/\1 0x1p3/; 2s/ 0\.50 / 1e-400 /' good/score.txt > $scratch/float.txt
try() {
    algdata check $1
    algdata export $1 -f ndjson --columns $2 > $scratch/records.json
    echo "export: status $?"
    cat $scratch/records.json
    algdata export $1 -f ndjson --columns $2 --where "$2>=2"
    algdata show $1 --columns $2
    echo "show: status $?"
    algdata stats $1 --columns $2 -f csv
    echo "stats: status $?"
}
try $scratch/range.txt channel
try $scratch/float.txt hopsFactor
echo '{"deviceMAC":"0a4e00000004","neighbourMAC":"0a4e00000005","band":2,"channel":300,"rssi":26}' |
    algdata import -k scanning -
