for format in json ndjson csv; do
    algdata export good/apAllDetail.txt -f $format | algdata import --kind ap-all-detail - -o $scratch/$format.txt &&
        cmp good/apAllDetail.txt $scratch/$format.txt && echo $format comes back as it was
done
