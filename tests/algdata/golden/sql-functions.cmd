# Tables of SQLite that read only their arguments, and values so large that the widths follow from the first two rows.
algdata sql good "SELECT apRank, value FROM ap_rank, json_each('[7, 8]') WHERE _record = 0"
algdata sql good "SELECT count(*) AS n FROM json_tree('{\"a\": [1, 2]}')"
algdata sql good 'WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 3)
    SELECT zeroblob(i * 4000000) AS x, i FROM n' | awk '{ print length($0) }'
