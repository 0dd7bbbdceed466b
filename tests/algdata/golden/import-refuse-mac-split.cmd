printf '%s\n' '{"deviceMAC":"a4c3 f00010","ethFatherMAC":"","apRank":1}' | algdata import --kind ap-rank - -o $scratch/file.txt; status=$?; ls -A $scratch; exit $status
