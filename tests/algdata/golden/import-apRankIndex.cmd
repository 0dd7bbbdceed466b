for format in json ndjson csv; do
    algdata export good/apRankIndex.txt -f $format | algdata import --kind ap-rank-index - -o $scratch/$format.txt &&
        cmp good/apRankIndex.txt $scratch/$format.txt && echo $format comes back as it was
done
