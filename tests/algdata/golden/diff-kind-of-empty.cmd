# An empty file on one side does not make the other one a file of --kind.
mkdir "$scratch/old" "$scratch/new"
cp good/algOutput.txt good/apRank.txt "$scratch/old"
cp good/algOutput.txt good/apRank.txt "$scratch/new"
: > "$scratch/old/links.txt"
cp good/bridging.txt "$scratch/new/links.txt"
cd "$scratch" || exit
algdata diff old new --kind alg-output
echo $?
algdata diff old new --kind bridging | tail -1
