algdata check damaged/scanningMacs.txt -f table --columns line,rule,message
