script -qec "algdata check damaged/apRankBlankLine.txt" /dev/null
