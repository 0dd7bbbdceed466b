. ./watching.sh
cp good/scanning.txt good/apRank.txt $scratch
start $scratch --where rssi=91 --columns channel,rssi
echo "a4c3f0000010 a4c3f0000011  0  6  90" >> $scratch/scanning.txt
echo "a4c3f0000010 a4c3f0000011  0  6  91" >> $scratch/scanning.txt; shown 1
finish
