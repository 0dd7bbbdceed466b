algdata export good/apAllDetail.txt -f ndjson
