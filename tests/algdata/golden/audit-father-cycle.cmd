cp home/* "$scratch"
cd "$scratch" || exit
# 02 -> 04 -> 02, and 03 is its own father
sed -i '/02 0a4e00000001/s/01 1/04 1/; /03 0a4e00000001/s/01 1/03 1/' ap_rank_index.txt
rm ap_node.txt ap_rank.txt bridging.txt
algdata audit .
