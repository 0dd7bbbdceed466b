# Conditions on path columns that SQLite splits into several scans, or compares as numbers.
mkdir -p $scratch/01/a $scratch/1/b $scratch/h2/b
for directory in 01/a 1/b h2/b; do cp good/algOutput.txt good/apRank.txt $scratch/$directory/; done
cd $scratch
for condition in "home = '1' OR night = 'b'" "home = '01' OR _record = 0" "home = 1" "home IN (1, 2)" \
    "home = (SELECT apRank FROM ap_rank WHERE _record = 1 LIMIT 1)" "home IN (SELECT apRank FROM ap_rank)"; do
    echo "== $condition"
    algdata sql . --path '{home}/{night}/*' "SELECT home, night, count(*) AS n FROM alg_output WHERE $condition GROUP BY 1, 2"
done
