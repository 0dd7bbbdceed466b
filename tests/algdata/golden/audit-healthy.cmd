cp home/* "$scratch"
cd "$scratch" || exit
algdata audit . --notes
