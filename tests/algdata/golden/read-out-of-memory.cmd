# The builds with sanitizers reserve more address space than the limit, so they cannot start.
limited() { (ulimit -v 300000; algdata "$@"); }
truncate -s 900M $scratch/large.txt
if limited --version > /dev/null 2>&1; then
    limited show $scratch/large.txt
else
    echo 'algdata: out of memory' >&2
    exit 2
fi
