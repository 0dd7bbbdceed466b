for format in json ndjson csv; do
    algdata export good/bridging.txt -f $format | algdata import --kind bridging - -o $scratch/$format.txt &&
        cmp good/bridging.txt $scratch/$format.txt && echo $format comes back as it was
done
