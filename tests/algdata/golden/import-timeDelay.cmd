for format in json ndjson csv; do
    algdata export good/timeDelay.txt -f $format | algdata import --kind time-delay - -o $scratch/$format.txt &&
        cmp good/timeDelay.txt $scratch/$format.txt && echo $format comes back as it was
done
