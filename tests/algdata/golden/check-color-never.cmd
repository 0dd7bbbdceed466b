algdata check damaged/apRankBlankLine.txt --color never
