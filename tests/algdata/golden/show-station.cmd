algdata show good/station.txt
