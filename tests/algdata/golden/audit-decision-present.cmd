cp home/* "$scratch"
cd "$scratch" || exit
echo 0a4e00000004 0a4e00000002 1 60 > decision.txt
algdata audit .
echo 0a5700000001 0a4e00000001 1 60 > decision.txt
algdata audit .
