algdata check damaged/apNodeClamped.txt damaged/apRankBlankLine.txt --color always
