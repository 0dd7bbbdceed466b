algdata watch $scratch/nothing; echo $?
algdata watch good/apRank.txt; echo $?
algdata watch good --format json; echo $?
algdata watch good --where rsi=3; echo $?
algdata watch good damaged; echo $?
algdata watch good --head 3; echo $?
