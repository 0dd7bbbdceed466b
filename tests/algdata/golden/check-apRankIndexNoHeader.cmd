algdata check damaged/apRankIndexNoHeader.txt
