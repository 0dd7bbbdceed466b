cp home/* "$scratch"
cd "$scratch" || exit
mkdir -p a/1 a/2 b/1
cp ./*.txt a/1; cp ./*.txt a/2; cp ./*.txt b/1
rm ./*.txt
sed -i 's/ 1 860/ 7 860/' a/2/ap_rank_index.txt
# One home, whose files are in two directories, and whose score file is named after its directory.
mkdir -p c/1/re_0a4e00000077
mv b/1/ap_rank.txt b/1/score_re_0a4e00000004.txt c/1/re_0a4e00000077
mv b/1/* c/1
rmdir b/1 b
algdata audit a c --summary --path '{home}/{snapshot}/*' --path '{home}/{snapshot}/re_{device}/*'
algdata audit c --path '{home}/{snapshot}/re_{device}/*' --path '{home}/{snapshot}/*'
algdata audit c
algdata audit c --path '{home'
# Two snapshots in one directory.
for file in a/1/*.txt; do cp "$file" "one-$(basename "$file")"; done
for file in a/2/*.txt; do cp "$file" "two-$(basename "$file")"; done
algdata tree ./*.txt --path '{snapshot}-*' --columns home,deviceMAC,throughput
