algdata check damaged/stationBlankLine.txt
