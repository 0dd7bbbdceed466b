cp home/* "$scratch"
cd "$scratch" || exit
algdata tree .
