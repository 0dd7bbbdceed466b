cp home/* "$scratch"
cd "$scratch" || exit
sed -i 's/0a4e00000003/0a4e0000000x/' ap_rank.txt
echo >> ap_rank.txt
echo '0a4e00000002 000000000000 1' >> ap_rank.txt
algdata check ap_rank.txt --write-baseline known
cut -d ' ' -f 2- known
algdata check ap_rank.txt --baseline known
# The same faults one line later are known; a second blank line is new.
sed -i '1i 0a4e00000009 000000000000 0' ap_rank.txt
echo >> ap_rank.txt
algdata check ap_rank.txt --baseline known
