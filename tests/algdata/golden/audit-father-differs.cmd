cp home/* "$scratch"
cd "$scratch" || exit
sed -i 's/0a4e00000004 0a4e00000002/0a4e00000004 0a4e00000003/' ap_node.txt
algdata audit .
# An older copy and a history do not count.
mv ap_node.txt ap_node_previous.txt
algdata audit .
