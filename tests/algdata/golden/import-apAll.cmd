for format in json ndjson csv; do
    algdata export good/apAll.txt -f $format | algdata import --kind ap-all - -o $scratch/$format.txt &&
        cmp good/apAll.txt $scratch/$format.txt && echo $format comes back as it was
done
