cp home/* "$scratch"
cd "$scratch" || exit
sed -i 's/ 2 240/ 2 433/; s/ 1 860/ 1 1001/' ap_rank_index.txt
algdata audit .
