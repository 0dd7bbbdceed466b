# What report refuses, before it writes anything.
mkdir "$scratch/nothing" "$scratch/home"
cp home/ap_rank.txt "$scratch/home"
cd "$scratch"
run() {
    echo "$ algdata report $*"
    algdata report "$@" 2>&1
    echo "status $?"
}
run nothing -o report.html
run missing -o report.html
run home -o home/ap_rank.txt
run home -o no/such/report.html
run home --format json -o report.html
run home --where rank=1 -o report.html
run
ls
