# ^C reaches the program and the pager. Some pagers end, others continue to the end of the text.
mkfifo $scratch/endless
exec 3<>$scratch/endless
for prefix in '' "trap '' INT; "; do
    export PAGER="${prefix}touch $scratch/paging; sed s/^/paged:/"
    {
        until [ -e $scratch/paging ]; do sleep 0.05; done
        printf '\003'
        sleep 1
    } | timeout 20 script -qec "algdata show $scratch/endless" /dev/null
    printf '\nstatus %s\n' "${PIPESTATUS[1]}"
    rm $scratch/paging
done
[ $SECONDS -lt 15 ] && echo "in time"
