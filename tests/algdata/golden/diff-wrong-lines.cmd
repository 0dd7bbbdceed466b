# The records are equal, but one file has lines with a wrong number of fields.
sed '2s/$/ 7/' good/apRank.txt > "$scratch/apRank.txt"
algdata diff good/apRank.txt "$scratch/apRank.txt"
