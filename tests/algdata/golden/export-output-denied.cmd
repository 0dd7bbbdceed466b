algdata export good/apRank.txt -o $scratch/none/a.json
