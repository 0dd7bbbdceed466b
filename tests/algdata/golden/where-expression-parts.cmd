# An array as a whole is one row per element, and a list one row per entry: a record needs one that fits.
algdata show good/score.txt --where 'rssi > 44 AND band = 1' --columns fatherMAC,rssi
algdata show good/score.txt --where 'rssi > 44 AND band = 2' --columns fatherMAC,rssi
algdata show good/score.txt --where '"rssi.0" < "rssi.1"' --columns fatherMAC,rssi
algdata show good/patV2.txt --where 'paraB > 64 OR mcsOrder = 2' --sort 'paraB DESC, deviceMac'
algdata show good/patV2.txt --where 'commonPatNum = (15) AND entry < 2'
algdata show good/patV2.txt --where 'commonPatNum > (9)' | tail -n 2
algdata diff good/patV2.txt damaged/patV2Entries.txt --where 'paraB = (64)' --limit 2
