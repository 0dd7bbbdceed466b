# Damaged values are counted and reported; no other figure includes them.
printf '%s\n' \
    'a4c3f0000010  0 0.50 15   19 0.72 1000 50 43 42 39  0  574 1729 1922 1441    0  565 1850 1840 1776    0' \
    'a4c3f0000011  0 1e400 15  19 nan  1000 50 43 42 39  0  574 1729 1922 1441    0  565 1850 1840 1776    0' \
    'a4c3f0000012  0 inf  15   19 0x1p3 1000 50 43 42 39 0  574 1729 1922 1441    0  565 1850 1840 1776    0' \
    'a4c3f000      x 1.00 15   -1 0.72 99999999999999999999 50 43 42 39 0 574 1729 70000 1441 0 565 1850 1840 1776' \
    > "$scratch/score.txt"
algdata stats "$scratch/score.txt" --kind score --format json > "$scratch/stats.json"
echo "status $?"
python3 -c 'import json, sys
def refuse(constant): raise ValueError(constant)
for row in json.load(open(sys.argv[1]), parse_constant=refuse):
    print(row["field"], row["values"], row["bad"], row["min"], row["median"], row["max"])' "$scratch/stats.json"
