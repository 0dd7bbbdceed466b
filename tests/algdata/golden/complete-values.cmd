algdata --complete show --where rs; algdata --complete show --where kind=sc; algdata --complete export --where algStrategy=; algdata --complete check --where severity!=
