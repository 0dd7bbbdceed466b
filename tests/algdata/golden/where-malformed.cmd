for test in 'rssi<abc' 'rssi<' 'rssi<0x10' 'rssi<10,5' 'rssi<10.5' 'rssi=>10' 'rssi=-1' 'rssi=+1' \
    'rssi<5 6' 'rssi 10' '=10' '' ' = 10' 'rssi=99999999999999999999' 'rssi=9223372036854775807' \
    'deviceMAC=a4c3f0' 'deviceMAC=a4:c3:f0:00:00:0g' 'deviceMAC=a4c3:f0000010' 'hopsFactor<1e400' 'hopsFactor<nan' \
    'hopsFactor<0,5' 'kind<scanning' 'kind=scaning' 'source>a'; do
    algdata show good/scanning.txt good/score.txt --where "$test"
    echo "$? for '$test'"
done
