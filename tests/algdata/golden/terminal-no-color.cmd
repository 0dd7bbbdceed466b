NO_COLOR=1 script -qec "algdata check damaged/apRankBlankLine.txt" /dev/null
