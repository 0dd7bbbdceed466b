algdata check damaged/apNodeShortLine.txt
