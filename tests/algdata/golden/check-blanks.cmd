tr ' ' '\t' < good/apRank.txt > $scratch/tabs.txt
sed '3s/ /\v/' good/apRank.txt > $scratch/verticalTab.txt
sed 's/^/  /' good/candidate.txt > $scratch/indented.txt
sed '2,3s/^/\t/' good/station.txt > $scratch/tabbed.txt
sed '3s/^/ /' good/patV2.txt > $scratch/entry.txt
for name in tabs verticalTab indented tabbed entry; do
    algdata check $scratch/$name.txt
done
