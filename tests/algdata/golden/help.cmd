algdata --help
