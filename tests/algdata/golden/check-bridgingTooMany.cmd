algdata check damaged/bridgingTooMany.txt
