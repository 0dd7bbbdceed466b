algdata export good/apRank.txt --format ndjson > "$scratch/one"
algdata export good/apRank.txt good/score.txt --format ndjson | grep '"kind":"ap-rank"' > "$scratch/many"
cmp "$scratch/one" "$scratch/many" && echo same
algdata export good/apRank.txt --format csv --columns apRank
