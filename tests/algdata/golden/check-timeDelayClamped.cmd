algdata check damaged/timeDelayClamped.txt
