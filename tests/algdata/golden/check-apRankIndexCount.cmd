algdata check damaged/apRankIndexCount.txt
