for format in json ndjson csv; do
    algdata export good/station.txt -f $format | algdata import --kind station - -o $scratch/$format.txt &&
        cmp good/station.txt $scratch/$format.txt && echo $format comes back as it was
done
