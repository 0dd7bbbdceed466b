algdata show --kind scanning damaged/scanningBinary.txt
