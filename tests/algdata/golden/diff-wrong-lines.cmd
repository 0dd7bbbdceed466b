# The same records, but not the same lines.
sed '2s/$/ 7/' good/apRank.txt > "$scratch/apRank.txt"
algdata diff good/apRank.txt "$scratch/apRank.txt"
