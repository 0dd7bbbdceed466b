algdata check damaged/timeDelayCase.txt
