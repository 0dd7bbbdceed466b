algdata check damaged/timeDelayBlankTail.txt
