for format in table markdown json ndjson csv record; do
    algdata sql good "SELECT srcMAC, timeout, NULL AS n, 0.5 AS half, 2.0 AS two, x'00ff' AS b, 'a|\"b' || char(10) || 'c' AS t FROM alg_output" -f $format
done
algdata sql good 'SELECT 9e999 AS huge, -1 AS less' -f json
algdata sql good 'SELECT srcMAC FROM alg_output WHERE 0'
algdata sql good 'SELECT srcMAC FROM alg_output WHERE 0' -f json
algdata sql good 'SELECT srcMAC FROM alg_output WHERE 0' -f csv
