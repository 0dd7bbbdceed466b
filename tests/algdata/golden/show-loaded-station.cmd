algdata show good/station.txt --view loaded
