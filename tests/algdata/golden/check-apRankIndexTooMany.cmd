algdata check damaged/apRankIndexTooMany.txt
