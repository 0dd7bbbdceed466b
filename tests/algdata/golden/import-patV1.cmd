algdata import --kind pat-v1 - < /dev/null
