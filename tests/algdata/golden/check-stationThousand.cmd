algdata check damaged/stationThousand.txt
