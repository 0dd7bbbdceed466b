# The common options apply to the rules too. Files have no part in it, so naming one is a mistake.
explain='algdata check --explain'
$explain blank-line -f json
$explain tab -f ndjson --columns rule,explanation
$explain -f csv --where severity=note
$explain --columns severity,rule --head 2
$explain -f markdown --where severity=warning --sort=-rule --head 2
$explain --where severity=serious
for arguments in 'good/apRank.txt --explain' 'good/apRank.txt --explain tab' '--explain tab good/apRank.txt' '--explain --columns line'; do
    algdata check $arguments
    echo "status $?"
done
