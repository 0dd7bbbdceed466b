cp home/* "$scratch"
cd "$scratch" || exit
# A ranking has room for 30 devices, so 31 devices in another file are well.
{ echo 30 29 1 5; echo 0a4e00000001 000000000000 0 9; } > ap_rank_index.txt
echo 0a4e00000001 000000000000 0 > ap_rank.txt
for i in {2..31}; do
    [ "$i" -eq 31 ] || printf '%012x 0a4e00000001 1 9\n' "$i" >> ap_rank_index.txt
    printf '%012x 000000000000 1\n' "$i" >> ap_rank.txt
done
algdata audit ap_rank_index.txt ap_rank.txt
