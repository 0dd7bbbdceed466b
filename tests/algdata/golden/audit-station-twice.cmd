cp home/* "$scratch"
cd "$scratch" || exit
sed 's/0a4e00000001/0a4e00000003/; 2,$d' stations.txt > stations_of_03.txt
algdata audit .
# A station that moved during a history is at one AP at a time.
cat stations.txt stations.txt stations_of_03.txt > station_samples.txt
rm stations_of_03.txt
algdata audit .
