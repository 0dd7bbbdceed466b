# The module prints strategy 4294967295 as -1 and reads it back, so the value is not damaged.
printf '0a4e00000001 0a4e00000002 -1 60\n' > $scratch/output.txt
for test in algStrategy=4294967295 'algStrategy>3' 'algStrategy<=3'; do
    algdata export $scratch/output.txt -f ndjson --columns algStrategy --where "$test"
done
algdata stats $scratch/output.txt --columns algStrategy
algdata check $scratch/output.txt
algdata export $scratch/output.txt | algdata import -k alg-output - | diff $scratch/output.txt - && echo same
