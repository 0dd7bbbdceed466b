algdata export good -f ndjson --where kind=ap-rank
