algdata check damaged/stationWide.txt
