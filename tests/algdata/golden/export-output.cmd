algdata export good/apRank.txt -o $scratch/a.json && cat $scratch/a.json; ls -A $scratch
