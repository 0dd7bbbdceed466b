# Each home has its own snapshots. The device is in the name of the file only.
cd $scratch
for home in north south; do
    for day in 1 2; do
        mkdir -p $home/day$day
        echo "a4c3f0000010  0 1.00 15   19 0.7$day 100$day 50 43 42 39  0  574 1729 1922 1441    0  565 1850 1840 1776    0" > $home/day$day/score_re_a4c3f0000012.txt
    done
done
cp -r south/day2 south/day3; echo text > south/day3/notes.txt
algdata history . --path '{home}/{snapshot}/score_re_{device}.txt' --field score.timeNormalization
algdata history . --path 'score={home}/{day}/*_{device}.txt' --order day --field score.thrputPredict --format ndjson
algdata history south --path '{home}/{snapshot}/score_re_{device}.txt' --field score.rssi --format csv --columns field,values --sort=-max --head 2
