algdata check damaged/zeroed.txt
