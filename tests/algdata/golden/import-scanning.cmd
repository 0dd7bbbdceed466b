for format in json ndjson csv; do
    algdata export good/scanning.txt -f $format | algdata import --kind scanning - -o $scratch/$format.txt &&
        cmp good/scanning.txt $scratch/$format.txt && echo $format comes back as it was
done
