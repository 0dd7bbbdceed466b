algdata show good/scanning.txt --where 'rssi>40' --where band=1 --sort=-rssi --head 3
