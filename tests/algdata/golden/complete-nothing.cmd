algdata --complete show ""; algdata --complete nosuch ""; algdata --complete show --head ""; algdata --complete
