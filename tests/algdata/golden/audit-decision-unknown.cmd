cp home/* "$scratch"
cd "$scratch" || exit
echo 0a4e00000099 0a4e00000098 1 60 > decision.txt
algdata audit .
# A station can move too; from and to nowhere means that nothing moves.
echo 0a5700000001 0a4e00000002 1 60 > decision.txt
algdata audit .
echo 000000000000 000000000000 0 0 > decision.txt
algdata audit .
