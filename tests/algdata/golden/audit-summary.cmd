cp home/* "$scratch"
cd "$scratch" || exit
sed -i 's/0a4e00000004 0a4e00000002/0a4e00000004 0a4e00000099/' ./*.txt
sed -i 's/ 2 240/ 9 240/; s/ 1 860/ 7 860/' ap_rank_index.txt
algdata audit . --summary
algdata audit . --summary --where severity=error --format csv
algdata audit . --summary --columns rule,findings --sort=-findings --head 1
algdata audit . --summary --where findings=1
algdata audit . --summary --sort line
