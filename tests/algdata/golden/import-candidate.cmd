for format in json ndjson csv; do
    algdata export good/candidate.txt -f $format | algdata import --kind candidate - -o $scratch/$format.txt &&
        cmp good/candidate.txt $scratch/$format.txt && echo $format comes back as it was
done
