cp good/apRank.txt "$scratch/[x]"
cp good/apRank.txt "$scratch/[x,y]"
cp good/apRank.txt "$scratch/-dash.txt"
cp good/apRank.txt "$scratch/check"
cp good/apRank.txt "$scratch/a b"
cd "$scratch"
algdata show --head 1 '[x]' '[x,y]' check 'a b'
algdata show --head 1 -- -dash.txt
algdata show --head 1 ./-dash.txt
algdata show --head 1 -dash.txt
algdata diff '[x]' '[x,y]'
algdata import --kind ap-rank '[z]'
algdata export '[x]' --head 1 -f csv -o '[z]' && cat '[z]'
rm '[z]'
algdata export . -f csv --head 1 --where 'source=./[x,y]'
