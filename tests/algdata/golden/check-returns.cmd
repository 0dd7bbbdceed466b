# CR LF is harmless. A lone carriage return does not end a line: the loaded view has one record less.
sed 's/$/\r/' good/apRank.txt > $scratch/crlf.txt
sed '2{N;s/\n/\r/}' good/apRank.txt > $scratch/lone.txt
sed '2s/ /\r/' good/apRank.txt > $scratch/between.txt
printf 'a4c3f0000013 a4c3f0000011 2 30\r' > $scratch/end.txt
for name in crlf lone between end; do
    algdata check $scratch/$name.txt
done
algdata show $scratch/lone.txt --view loaded
