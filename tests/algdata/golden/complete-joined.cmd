# An option and its value in one word, and a blank after a comma.
algdata --complete show --kind=sc; algdata --complete show --where=rs; algdata --complete show --where=kind=sc
for kind in --kind=station -kstation; do algdata --complete show $kind --columns rs; done
algdata --complete show --columns 'band, rs'
source <(algdata --generate-completion bash)
compopt() { echo "compopt $*"; }
COMP_WORDS=(algdata show --kind = sc) COMP_CWORD=4
_algdata algdata
echo "${COMPREPLY[@]}"
