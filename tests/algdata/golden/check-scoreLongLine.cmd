algdata check damaged/scoreLongLine.txt
