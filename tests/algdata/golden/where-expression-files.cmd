# An expression over kind and source chooses files. Files of a kind that lacks a column are left out.
algdata show good --where "kind IN ('ap-rank', 'alg-output')"
algdata show good --where "source LIKE '%can%' AND kind <> 'scanning'"
algdata show good --where 'rssi > 100 AND throughput > 300'
algdata stats good --where "kind = 'ap-rank'" -f csv --where apRank=1
algdata export good -f csv --where "kind = 'station'" --where 'id < (2)'
algdata export good/scanning.txt -f ndjson --where 'random() IS NULL'
