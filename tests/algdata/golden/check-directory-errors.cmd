algdata check damaged --where severity=error --columns file,line,column,rule
