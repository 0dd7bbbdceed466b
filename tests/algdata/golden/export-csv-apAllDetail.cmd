algdata export good/apAllDetail.txt -f csv
