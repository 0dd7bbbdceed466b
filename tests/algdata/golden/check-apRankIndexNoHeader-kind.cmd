algdata check --kind ap-rank-index damaged/apRankIndexNoHeader.txt
