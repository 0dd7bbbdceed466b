printf '%s\n' '{"cnt":2,"process_re":1,"alg_strategy":1,"starttime":5,"apRank":[]}' | algdata import --kind ap-rank-index - -o $scratch/file.txt; status=$?; ls -A $scratch; exit $status
