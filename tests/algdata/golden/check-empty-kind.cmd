algdata check --kind station damaged/empty.txt
