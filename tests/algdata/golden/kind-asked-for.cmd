# Who names a kind gets what stands there, with a message.
algdata export damaged/unknown.txt --kind ap-rank -f ndjson
