algdata export good/apAllDetail.txt
