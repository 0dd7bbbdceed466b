cp home/* "$scratch"
cd "$scratch" || exit
sed -i 's/0a4e00000004 0a4e00000002/0a4e00000004 0a4e00000003/' ap_node.txt
sed -i '4s/ 2$/ 3/' ap_rank.txt
algdata tree .
algdata tree . --columns deviceMAC,fatherMAC,note
