for query in 'SELECT rsi FROM score_band' 'SELECT rssi FROM score' 'SELECT s.rsi FROM score_band AS s' 'SELECT * FROM scor' 'SELECT * FROM decision' 'SELECT home FROM score' 'SELECT "hom"' \
    'SELECT rssi FORM score' 'SELECT (1' '' ' -- nothing' 'SELECT 1; SELECT 2' 'SELECT ?' 'SELECT :mac' 'SELECT #mac, 0' "SELECT $(printf '%0200d' 0 | tr 0 '(')1" 'SELECT nosuch(1)' \
    "SELECT 'rsi' AS a,
    rsi FROM score_band" "SELECT count(*) FROM score WHERE fatherMAC = 'x' AND _record > zzzzz"; do
    echo "== $query"
    algdata sql good "$query"
    echo $?
done 2>&1
algdata sql good 'SELECT rsi FROM score_band' --errors json
algdata sql good 'SELECT 1' --errors xml
