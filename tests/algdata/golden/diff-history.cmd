sed 1d good/station.txt > $scratch/sta.txt; algdata diff good/station.txt $scratch/sta.txt
