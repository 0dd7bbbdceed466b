cp home/* "$scratch"
cd "$scratch" || exit
sed -i 's/000000000000 0/000000000000 1/' ap_rank_index.txt
sed -i 's/ 1 620/ 2 620/; s/ 1 860/ 2 860/; s/ 2 240/ 3 240/' ap_rank_index.txt
algdata audit .
