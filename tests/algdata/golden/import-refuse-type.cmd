printf '%s\n' '{"deviceMAC":17,"ethFatherMAC":"000000000000","apRank":"one"}' | algdata import --kind ap-rank - -o $scratch/file.txt; status=$?; ls -A $scratch; exit $status
