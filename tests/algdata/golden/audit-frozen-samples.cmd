cp home/* "$scratch"
cd "$scratch" || exit
for _ in 1 2 3 4 5 6 7 8; do sed -n 3p bridging.txt; done > links.txt
for _ in 1 2 3 4 5 6 7 8; do sed -n 1p time_delay_re_0a4e00000004.txt; done > delays.txt
for i in 1 2 3 4 5 6 7 8; do sed "s/^  0/  $i/; 2,\$d" stations.txt; done > samples.txt
algdata audit .
# Seven records are too few, and so are eight that vary.
sed -i 1d links.txt
sed -i '8s/33/34/' delays.txt
sed -i '8s/50/51/' samples.txt
algdata audit .
