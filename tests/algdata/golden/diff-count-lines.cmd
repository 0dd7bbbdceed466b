# The readers read as many devices as the count line states. One that follows the devices is no difference.
sed '1s/.*/200/' good/patV2.txt > $scratch/stated.txt
sed '1d' good/patV2.txt > $scratch/none.txt
printf '1\na4c3f0000010 1\n0 1 0 2 64 46094\n' > $scratch/one.txt
printf '2\na4c3f0000010 1\n0 1 0 2 64 46094\na4c3f0000011 1\n0 1 0 2 64 46094\n' > $scratch/two.txt
algdata diff good/patV2.txt $scratch/stated.txt
echo "status $?"
algdata diff $scratch/stated.txt $scratch/none.txt -f ndjson
algdata diff good/patV2.txt $scratch/none.txt --kind pat-v2
algdata diff good/patV2.txt $scratch/stated.txt --columns deviceMac
algdata diff good/patV2.txt $scratch/stated.txt --where deviceMac=a4c3f0000010
algdata diff $scratch/one.txt $scratch/two.txt
