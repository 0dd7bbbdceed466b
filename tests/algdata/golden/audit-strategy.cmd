cp home/* "$scratch"
cd "$scratch" || exit
sed -i 's/^4 3 2/4 3 7/' ap_rank_index.txt
echo 0a4e00000004 0a4e00000003 -1 60 > decision.txt
algdata audit .
