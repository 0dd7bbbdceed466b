# --kind on a file of another kind: the file is read as that kind, and a message reports the wrong lines.
algdata export damaged/unknown.txt --kind ap-rank -f ndjson
