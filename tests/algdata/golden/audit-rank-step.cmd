cp home/* "$scratch"
cd "$scratch" || exit
sed -i 's/0a4e00000002 2 240/0a4e00000002 3 240/' ap_rank_index.txt
sed -i 's/000000000000 2/000000000000 3/' ap_rank.txt
algdata audit .
