PAGER='sed s/^/paged:/' script -qec 'algdata show good/apRank.txt --color never' /dev/null
