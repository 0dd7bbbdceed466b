algdata check damaged/apAllLongMac.txt
