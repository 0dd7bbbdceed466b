cp home/* "$scratch"
cd "$scratch" || exit
algdata audit ap_rank_index.txt ./ap_rank_index.txt ap_rank.txt
algdata tree - < ap_rank_index.txt
