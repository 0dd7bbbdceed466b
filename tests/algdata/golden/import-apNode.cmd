for format in json ndjson csv; do
    algdata export good/apNode.txt -f $format | algdata import --kind ap-node - -o $scratch/$format.txt &&
        cmp good/apNode.txt $scratch/$format.txt && echo $format comes back as it was
done
