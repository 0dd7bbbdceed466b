algdata --generate-completion zsh
