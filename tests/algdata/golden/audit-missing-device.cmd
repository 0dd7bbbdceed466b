cp home/* "$scratch"
cd "$scratch" || exit
sed -i '/^0a4e00000003/d' ap_node.txt
sed -i '/^0a4e00000001/d' ap_rank.txt
cp score_re_0a4e00000004.txt score_re_0a4e00000077.txt
algdata audit .
