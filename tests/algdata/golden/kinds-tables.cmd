algdata kinds -f csv --columns kind,in,field,table,index --where 'kind IN ('"'score', 'pat-v2'"')'
