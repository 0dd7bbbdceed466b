algdata sql good 'SELECT deviceMAC FROM ap_rank ORDER BY 1' --max-rows 1
echo $?
algdata sql good 'SELECT deviceMAC FROM ap_rank ORDER BY 1' --max-rows x
algdata sql good 'WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT count(*) FROM n' --timeout 0.2
echo $?
algdata sql good 'SELECT 1' --timeout 0
algdata sql good 'SELECT 1' --timeout nan
algdata sql good 'SELECT 1' -f xml
algdata sql nosuch good 'SELECT 1'
algdata sql good --kind scoer "SELECT 1"
algdata sql good/score.txt --kind station "SELECT count(*) AS n FROM station"
echo 'SELECT count(*) FROM alg_output' | algdata sql good
cat good/decision.txt 2>/dev/null | algdata sql - 'SELECT count(*) AS n FROM file'
