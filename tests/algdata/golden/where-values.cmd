# All of these find one record: the MAC in several spellings, blanks in several places.
for test in 'neighbourMAC=a4c3f0000012' 'neighbourMAC=A4C3F0000012' 'neighbourMAC = A4:c3:f0:00:00:12' ' rssi = 60 ' \
    'rssi=060' 'rssi > 59'; do
    algdata export good/scanning.txt -f csv --where 'rssi>52' --where "$test" --columns rssi
done
algdata export damaged/scanningMacs.txt -f csv --where 'neighbourMAC!=a4c3f0000011' --columns neighbourMAC
algdata export good/score.txt -f csv --where 'hopsFactor>=0.95' --columns hopsFactor
