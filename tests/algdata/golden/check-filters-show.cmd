# Filters select the findings to show; the counts and the exit status cover all findings.
for filter in '--where severity=warning' '--where rule=clamped' '--where line>5' '--head 1' '--head 0' '--sort=-line --head 1'; do
    # shellcheck disable=SC2086
    algdata check damaged/scanningMacs.txt damaged/timeDelayClamped.txt $filter
    echo "status $?"
done
algdata check damaged/scanningMacs.txt --head 0 --format ndjson
echo "status $?"
