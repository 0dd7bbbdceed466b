algdata check damaged/patV2Count.txt
