cp home/* "$scratch"
cd "$scratch" || exit
sed -i 's/0a4e00000004 0a4e00000002/0a4e00000004 0a4e00000099/' ./*.txt
sed -i 's/ 2 240/ 9 240/; s/ 1 860/ 7 860/' ap_rank_index.txt
for format in table json ndjson csv markdown; do
    algdata audit . --format $format
done
algdata audit . --columns rule,line --sort=-line
algdata audit . --where severity=error --head 1
