algdata export good/apRank.txt -f csv --head 1 --columns kind
algdata export good/apRank.txt -f csv --head 1 --columns source,apRank
algdata export good/apRank.txt -f ndjson --head 1 --columns apRank,source
algdata export good -f ndjson --head 1 --columns kind,rssi
algdata show good --head 1 --columns source,kind,rssi
algdata show good/apRank.txt --head 2 --columns kind
algdata show good/patV1.txt --head 1 --columns kind,deviceMac
