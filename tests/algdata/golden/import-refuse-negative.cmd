printf '%s\n' '{"deviceMAC":"a4c3f0000010","ethFatherMAC":"000000000000","apRank":-1}' | algdata import --kind ap-rank - -o $scratch/file.txt; status=$?; ls -A $scratch; exit $status
