algdata check --kind alg-output damaged/algOutputStrategy.txt
