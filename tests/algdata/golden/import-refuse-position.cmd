algdata export good/station.txt -f csv > $scratch/station.csv
sed '2d' $scratch/station.csv | algdata import -k station - -o $scratch/station.txt
echo "status $?"
# Without positions in the input, the import numbers the records.
sed '2d' $scratch/station.csv | cut -d , -f 1-2,4- | algdata import -k station - | cut -c 1-20
