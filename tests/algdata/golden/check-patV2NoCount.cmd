algdata check damaged/patV2NoCount.txt
