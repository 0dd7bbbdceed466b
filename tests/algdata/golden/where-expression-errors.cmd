# Errors show the place. Nothing but the row can be read, and nothing can be written.
for where in 'rsi < 40 OR 1' 'rssi < 40 AND bnad = 1' 'rssi = "x"' '"rssi.9" < 3' 'rssi <' 'rssi LIKE' '1; DROP' '1; DROP TABLE scanning' \
    "(SELECT load_extension('x'))" "load_extension('x')" '(SELECT 1)' 'EXISTS (SELECT 1)' 'rssi IN (SELECT 1)' 'rssi IN scanning' \
    'rssi IN sqlite_master' 'rssi IN pragma_user_version' '1) OR (1' 'rssi < 3) -- ' '1 LIMIT 1' '1 ORDER BY rssi' '1 UNION SELECT 1' '1 /*' "'a" '?1 = 1' 'rssi = :a' 'source GLOB #source' \
    'count(*) > 1' 'row_number() OVER () = 1' 'nosuch(rssi)' '()' ';' '-- ' "ATTACH 'x' AS y" 'PRAGMA user_version' \
    'apRank = 1 AND rssi = (1)'; do
    algdata show good/scanning.txt good/apRank.txt --where "$where" > $scratch/out
    echo "$? for '$where'"
    cat $scratch/out
done
echo "== one file"
algdata show good/scanning.txt --where 'apRank < (1)'
algdata show good -k scanning --where 'apRank < (1)'
algdata show good/scanning.txt --where 'abs(-9223372036854775807 - (rssi > 0)) = 1'
echo "status $?"
algdata check good --where 'lin > (1)'
algdata check good --where "severity == \"error\""
algdata check good --where '(SELECT 1)'
algdata kinds --where 'unit LIKE'
echo "== large"
ones=$(printf '1%.0s' $(seq 100000))
algdata export good/scanning.txt -f ndjson --where "$ones > 0 AND rssi > 56" --columns rssi
deep=$(printf '(%.0s' $(seq 50000))
algdata export good/scanning.txt --where "${deep}1"
or=$(printf 'rssi = 1 OR %.0s' $(seq 5000))
algdata export good/scanning.txt --where "$or 0"
