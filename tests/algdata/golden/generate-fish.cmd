algdata --generate-completion fish
