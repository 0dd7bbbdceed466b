algdata export good -f ndjson > /dev/full
