algdata show good/apNode.txt --columns fatherDeviceMAC,wirelessRxRate.1,plcUtilization
