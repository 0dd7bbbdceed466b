algdata kinds -k ap-rank -f markdown --columns field,type,range
