# Directories without a common device are hardly snapshots of one home.
mkdir "$scratch/one" "$scratch/two"
cd "$scratch"
echo 0a4e00000001 000000000000 0 >one/rank.txt
echo 0a4e00000002 000000000000 0 >two/rank.txt
algdata report one two | grep -c '<article'
