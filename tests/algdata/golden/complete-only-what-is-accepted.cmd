# --sort refuses kind and source, import refuses tables. After -- there are only files.
algdata --complete show --sort k; algdata --complete show --sort so; algdata --complete show --columns k
algdata --complete import --format ""
algdata --complete show -- --c
