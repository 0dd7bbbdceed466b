algdata check damaged/stationEmptyMac.txt
