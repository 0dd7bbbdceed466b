for format in json ndjson csv; do
    algdata export good/patV2.txt -f $format | algdata import --kind pat-v2 - -o $scratch/$format.txt &&
        cmp good/patV2.txt $scratch/$format.txt && echo $format comes back as it was
done
