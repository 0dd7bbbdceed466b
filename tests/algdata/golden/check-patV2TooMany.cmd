algdata check damaged/patV2TooMany.txt
