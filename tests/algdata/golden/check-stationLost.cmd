algdata check damaged/stationLost.txt
