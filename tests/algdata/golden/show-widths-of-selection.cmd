# The widths fit the rows that are shown, and only these: the rest of the file may be wider or damaged.
cp good/scanning.txt $scratch/scan.txt
printf 'a4c3f0000010 wide-and-damaged 1 100 12345678\n' >> $scratch/scan.txt
for options in '--head 2' '--sort=-rssi --head 2' '--where rssi<40' '--view loaded --sort rssi --head 2' \
    '--sort rssi --where band=1 -f markdown' '--head 0' '--where rssi>300'; do
    algdata show $scratch/scan.txt --columns neighbourMAC,rssi $options
done
algdata show good/patV2.txt --where mcsOrder=1 --sort=-paraB --head 1
algdata show good/patV2.txt --view loaded --where mcsOrder=1 --columns deviceMac,mcsOrder
algdata show good/patV1.txt --head 1 --columns bParameter | head -4
algdata show $scratch/scan.txt --columns rssi | tail -2
