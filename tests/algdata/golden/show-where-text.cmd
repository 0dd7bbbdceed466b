algdata show damaged/apNodeNotANumber.txt --columns deviceMAC,plcUtilization --where 'plcUtilization>10'
