algdata kinds -f csv --where type=float
