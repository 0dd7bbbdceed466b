source <(algdata --generate-completion bash)
compopt() { echo "compopt $*"; }
try() {
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
    _algdata algdata
    echo "$*:" "${COMPREPLY[@]}"
}
try algdata sho
try algdata show --where rs
try algdata show --where kind = sc
try algdata show --where algStrategy =
try algdata show --where "'kind=st"
try algdata stats --columns band,rs
try algdata show data/
