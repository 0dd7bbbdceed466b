algdata stats good/station.txt -f markdown --columns rssi,rxRate
