algdata --complete show --w; algdata --complete check --explain too
