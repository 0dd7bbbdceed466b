printf '%s\n' '{"deviceMAC":"abc","ethFatherMAC":"000000000000","apRank":7}' | algdata import --kind ap-rank - -o $scratch/file.txt; status=$?; ls -A $scratch; exit $status
