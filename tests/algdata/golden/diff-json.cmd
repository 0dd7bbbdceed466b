sed 's/64 46094/65 46095/' good/patV2.txt | sed 5d > $scratch/pat.txt; algdata diff good/patV2.txt $scratch/pat.txt -f ndjson --where mcsOrder=1
