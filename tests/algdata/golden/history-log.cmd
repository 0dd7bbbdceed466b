# The records of a key in one file are points in time, in their order.
algdata history good/bridging.txt --field bridging.bridgingRssi.0
algdata history good/bridging.txt --field bridging.bridgingRssi --by fatherDeviceMAC --columns fatherDeviceMAC,field,values
algdata history good/station.txt --field station.rssi --by apMac --view loaded
algdata history good/scanning.txt --field rssi --kind scanning --by band,channel --where 'rssi>30' --sort=-max,band
