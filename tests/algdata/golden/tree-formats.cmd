cp home/* "$scratch"
cd "$scratch" || exit
for format in table json ndjson csv markdown dot; do
    algdata tree . --format $format
done
algdata tree . --columns deviceMAC,backhaulRssi --where 'backhaulRssi<30'
algdata tree . --sort=-throughput --head 1 --columns deviceMAC,throughput
algdata tree . --format dot --where apRank=1
algdata tree . --format sarif
algdata tree . --where rsi=1
