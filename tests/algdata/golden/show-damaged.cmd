algdata show damaged/apNodeShortLine.txt damaged/stationEmptyMac.txt
