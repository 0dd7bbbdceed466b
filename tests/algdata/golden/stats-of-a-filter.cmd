# How full a file is depends on all its records, not only on those that match the filter.
algdata stats good/scanning.txt --where 'rssi>52' --columns rssi
algdata stats good/scanning.txt --head 1 --columns rssi --format csv
algdata stats good/apRankIndex.txt --where 'throughput>1300' --columns throughput
algdata stats good/scanning.txt --where 'rssi>200' --columns rssi
algdata stats good --where kind=ap-rank --columns kind
