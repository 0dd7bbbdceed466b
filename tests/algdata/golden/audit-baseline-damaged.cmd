cp home/* "$scratch"
cd "$scratch" || exit
echo 'not one' > known
algdata audit . --baseline known
printf '# algdata baseline 1\n12ab 1\n' > known
algdata audit . --baseline known
algdata audit . --baseline missing
algdata audit . --baseline ''
algdata audit . --write-baseline missing/known
algdata audit . --write-baseline ap_rank.txt
printf '# algdata baseline 1\n12ab 1\n' > known
algdata audit . --write-baseline known
cat known
algdata audit . missing --write-baseline known2
[ -e known2 ] || echo known2 is not written
