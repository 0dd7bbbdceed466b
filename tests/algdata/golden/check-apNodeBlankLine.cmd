algdata check damaged/apNodeBlankLine.txt
