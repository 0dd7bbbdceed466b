algdata show good/apAllDetail.txt
