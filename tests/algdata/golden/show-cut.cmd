algdata show good/scanning.txt --head 1 --columns rssi
algdata show good/scanning.txt --head 100 --columns rssi --where 'rssi>60'
algdata show good/apRankIndex.txt --where 'throughput<1000'
algdata show good/patV2.txt --head 1 --columns deviceMac
algdata show damaged/apNodeShortLine.txt --head 1 --columns deviceMAC
