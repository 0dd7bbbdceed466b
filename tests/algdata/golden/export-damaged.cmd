algdata export damaged -f ndjson --head 2
