echo old > $scratch/f.txt; echo '[{}]' | algdata import -k ap-rank - -o $scratch/f.txt; cat $scratch/f.txt
