cp home/* "$scratch"
cd "$scratch" || exit
sed -i 's/0a4e00000004 0a4e00000002/0a4e00000004 0a4e00000099/' ./*.txt
sed -i 's/ 2 240/ 9 240/; s/ 1 860/ 7 860/' ap_rank_index.txt
algdata audit . --write-baseline known
cut -d ' ' -f 2- known
algdata audit . --baseline known
# Lines may move; a new finding is reported, and only that.
sed -i '1i 0a4e00000005 000000000000 1' ap_rank.txt
algdata audit . --baseline known --fail-on warning
algdata audit . --baseline known --format ndjson
