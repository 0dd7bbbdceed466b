algdata export good/station.txt -f csv --columns deviceMac,rssi --sort rssi
