cp home/* "$scratch"
cd "$scratch" || exit
sed -i 's/^0a4e00000002/0A4E00000002/' ap_rank.txt
sed -i 's/0a5700000002/0A5700000002/' stations.txt
cp stations.txt stations_of_02.txt
algdata audit .
