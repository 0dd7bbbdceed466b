# The input never ends, so the command ends only because the pager does.
mkfifo $scratch/endless
exec 3<>$scratch/endless
PAGER=true timeout 20 script -qec "algdata show $scratch/endless" /dev/null
echo "status $?"
[ $SECONDS -lt 10 ] && echo "in time"
