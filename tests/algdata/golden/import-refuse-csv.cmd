printf '%s\n' 'deviceMAC,ethFatherMAC,apRank
a4c3f0000010,000000000000' | algdata import --kind ap-rank - -o $scratch/file.txt; status=$?; ls -A $scratch; exit $status
