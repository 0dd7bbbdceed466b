# Numbers in the form that the module writes stay unchanged. Other decimal forms are converted to valid JSON.
echo 'a4c3f0000010 1 -0.00 0 0 340282346638528859811704183484516925440.00 0 1 2 3 4 5 1 2 3 4 5 1 2 3 4 5' |
    algdata export -k score - -f ndjson
for number in 1.5e3 +1.5 .5 5. 0x1p3 007.5 0.855 -1.25; do
    echo "a4c3f0000010 1 $number 0 0 0 0 1 2 3 4 5 1 2 3 4 5 1 2 3 4 5"
done | algdata export -k score - -f csv --columns hopsFactor
