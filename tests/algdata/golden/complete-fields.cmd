algdata --complete show --columns band,rs; algdata --complete show -k pat-v2 --sort -para; algdata --complete check --sort co
