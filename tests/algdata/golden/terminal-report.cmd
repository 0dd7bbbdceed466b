# A page is nothing for a terminal.
script -qec 'algdata report home; echo status $?' /dev/null </dev/null | tr -d '\r'
