cp home/* "$scratch"
cd "$scratch" || exit
mkdir one 'two"\'
cp ap_rank_index.txt one
cp bridging.txt 'two"\'
rm ./*.txt
algdata tree .
algdata tree . --format dot
algdata tree 'two"\/bridging.txt' one/ap_rank_index.txt 'two"\/bridging.txt' --columns home,deviceMAC
mkdir none
algdata tree none
: > none/empty.txt
algdata tree none
