# An empty value, such as that of an unset variable, is not the same as no option.
for option in -o --output -k --kind -f --format --view --color --columns --where --sort --head; do
    algdata show good/apRank.txt $option ''
    echo "$option: status $?"
done
algdata import -k ap-rank good/apRank.txt -f ''
echo "status $?"
algdata kinds -k ''
