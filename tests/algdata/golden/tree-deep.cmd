cp home/* "$scratch"
cd "$scratch" || exit
for i in {1..40}; do printf '%012x %012x 1\n' "$i" $((i - 1)); done > ap_rank.txt
algdata tree ap_rank.txt | tail -n 22
algdata tree ap_rank.txt --columns depth,rootPath --format csv | tail -n 9 | head -n 2
