# If one of several files cannot be written, a message says which files are new.
mkdir $scratch/csv
echo old > $scratch/csv/ap-node.csv
ln -s /dev/full $scratch/csv/station.csv
algdata export good/apNode.txt good/station.txt -f csv -o $scratch/csv/
echo "status $?, $(cat $scratch/csv/ap-node.csv)"
rm $scratch/csv/*
# A directory takes the name of a file during the export, so that this file cannot be renamed.
mkfifo $scratch/station.txt
algdata export good/apRank.txt $scratch/station.txt -f csv -o $scratch/csv &
until ls -l /proc/$!/fd | grep -q "csv/.*deleted\|csv/.algdata"; do sleep 0.02; done
mkdir $scratch/csv/ap-rank.csv
timeout 10 cp good/station.txt $scratch/station.txt
wait $!
echo "status $?"
ls -A $scratch/csv
