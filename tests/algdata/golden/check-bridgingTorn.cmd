algdata check damaged/bridgingTorn.txt
