for format in json ndjson csv; do
    algdata export good/apRank.txt -f $format | algdata import --kind ap-rank - -o $scratch/$format.txt &&
        cmp good/apRank.txt $scratch/$format.txt && echo $format comes back as it was
done
