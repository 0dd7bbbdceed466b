algdata check damaged/apRankIndexStrategy.txt
