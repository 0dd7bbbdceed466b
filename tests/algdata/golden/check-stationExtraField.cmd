algdata check damaged/stationExtraField.txt
