for severity in error warning note never; do
    algdata check damaged/apNodeTwice.txt --fail-on $severity
    echo $?
done
algdata check damaged/apNodeTwice.txt --fail-on warn
