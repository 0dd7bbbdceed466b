algdata check damaged/patV2Entries.txt
