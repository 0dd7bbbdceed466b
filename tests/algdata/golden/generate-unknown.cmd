algdata --generate-completion tcsh
