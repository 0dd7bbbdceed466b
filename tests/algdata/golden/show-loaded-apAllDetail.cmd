algdata show good/apAllDetail.txt --view loaded
