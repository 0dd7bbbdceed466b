algdata check damaged/apRankBlankLine.txt
