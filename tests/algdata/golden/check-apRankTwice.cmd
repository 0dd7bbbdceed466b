algdata check damaged/apRankTwice.txt
