for format in json ndjson csv; do
    algdata export good/score.txt -f $format | algdata import --kind score - -o $scratch/$format.txt &&
        cmp good/score.txt $scratch/$format.txt && echo $format comes back as it was
done
