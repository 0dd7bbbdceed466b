algdata sql good "SELECT deviceMAC FROM ap_rank WHERE deviceMAC IN (SELECT upper(deviceMAC) FROM ap_rank LIMIT 1)"
cat > $scratch/algdata.toml <<'T'
path = ["{family}.txt"]
[names]
"11:22:33:44:55:66" = "attic"
T
cp good/*.txt $scratch
algdata sql $scratch 'SELECT * FROM name'
algdata sql $scratch "SELECT name_of('11-22-33-44-55-66') AS a, name_of('112233445566') AS b, name_of('x') AS c, name_of(NULL) AS d, name_of('$(printf '%0300d' 0)') AS e"
algdata sql $scratch "SELECT family FROM alg_output"
algdata check $scratch | tail -1
for bad in 'x = 1' '[names]
x = "y"' '[name]
a = 1' '[names]
112233445566 = ["a", "b"]' '[names]
112233445566 = "a"
11:22:33:44:55:66 = "b"' '[nothing]' '[[names]]' "[$(printf '%05000d' 0 | sed 's/0/a./g')b]
x = 1" 'path = [' 'path = "{"'; do
    printf '%s\n' "$bad" > $scratch/c.toml
    algdata sql good --config $scratch/c.toml 'SELECT 1 AS one'
done
algdata sql good --config $scratch/none.toml 'SELECT 1'
