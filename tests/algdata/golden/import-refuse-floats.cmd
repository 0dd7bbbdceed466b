: > $scratch/score.txt
score() {
    echo "{\"fatherMAC\":\"a4c3f0000010\",\"apRank\":1,\"hopsFactor\":$1,\"timeDelayTestCnt\":0,\"timeDelayAverage\":0,\"timeNormalization\":0,\"thrputPredict\":0,\"rssi\":[1,2,3,4,5],\"negoRate\":[1,2,3,4,5],\"patRate\":[1,2,3,4,5]}"
}
for number in 0.855 1e-50 16777217 3.4e38 1e400 -1e-400 NaN 0x1p3 '"0.5"' true 0.1 -0 -0.0 1e2 1E+2 25e-2 340282346638528859811704183484516925440; do
    for round in '' --round; do
        score $number | algdata import -k score - $round -o $scratch/score.txt
        echo "$number $round: status $?, $(cut -d ' ' -f 4 $scratch/score.txt)"
        : > $scratch/score.txt
    done
done
echo 'fatherMAC,apRank,hopsFactor,timeDelayTestCnt,timeDelayAverage,timeNormalization,thrputPredict,rssi.0,rssi.1,rssi.2,rssi.3,rssi.4,negoRate.0,negoRate.1,negoRate.2,negoRate.3,negoRate.4,patRate.0,patRate.1,patRate.2,patRate.3,patRate.4' > $scratch/head.csv
for number in 0x1p3 nan inf 1e 1,5 +1.5 .5 5. ' 1' 1.; do
    { cat $scratch/head.csv; echo "a4c3f0000010,1,\"$number\",0,0,0,0,1,2,3,4,5,1,2,3,4,5,1,2,3,4,5"; } |
        algdata import -k score - -o $scratch/score.txt
    echo "$number: status $?, $(cut -d ' ' -f 4 $scratch/score.txt)"
    : > $scratch/score.txt
done
