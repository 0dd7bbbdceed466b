algdata --generate-man $scratch/missing
