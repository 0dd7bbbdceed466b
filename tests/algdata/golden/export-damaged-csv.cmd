algdata export damaged/apNodeNotANumber.txt damaged/apNodeShortLine.txt -f csv --columns deviceMAC,plcUtilization,offset
