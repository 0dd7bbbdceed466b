for format in json ndjson csv; do
    algdata export good/algOutput.txt -f $format | algdata import --kind alg-output - -o $scratch/$format.txt &&
        cmp good/algOutput.txt $scratch/$format.txt && echo $format comes back as it was
done
