{
    printf 'a4c3f0000010 a4c3f0000011 0 6 33\n'
    printf 'hello a4c3f0000011 0 6 33\n'
    printf 'a4c3f00000\0370 a4c3f0000011 0 6 33\n'
    printf 'a4c3f0000010 a4c3f0000011 0 \377 33\n'
    printf 'a4c3f0000010 a4c3f000001\303\274 0 6 33\n'
    printf 'a4c3f0000010 a4c3f0000011 \0000 6 33\n'
    printf 'a4c3f0000010 a4c3f0000011 0 6.5 99999999999999999999\n'
    printf 'a4c3f0000010 a4c3f0000011 0 6\n'
    printf 'a4c3f0000010 a4c3f0000011 0 6 33 extra\n'
} > $scratch/scan.txt
for format in ndjson csv; do
    algdata export --kind scanning $scratch/scan.txt -f $format
    echo "status $?"
done
printf 'a4c3f0000010 1 nan 0 0 inf 0 1 2 3 4 5 1 2 3 4 5 1 2 3 4 5\n' | algdata export --kind score -
echo "status $?"
algdata export damaged/scanningZeroTail.txt -f ndjson
echo "status $?"
