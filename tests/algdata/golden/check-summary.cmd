algdata check damaged --summary
algdata check damaged/unknown.txt damaged/scanningMacs.txt --summary --format json --where severity=error
algdata check damaged --summary --path '*/{file}.txt' --head 3
