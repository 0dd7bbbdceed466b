printf '%s\n' '[{"deviceMAC":}]' | algdata import --kind ap-rank - -o $scratch/file.txt; status=$?; ls -A $scratch; exit $status
