# Reading a record again takes as long as the record, even if all records are on one line.
awk 'BEGIN {
    for (record = 0; record < 1000; ++record) {
        printf "%012x", record
        for (value = 0; value < 200; ++value)
            printf " %d", value == 150 ? record * 7919 % 1000 : value
        print ""
    }
}' > $scratch/lines.txt
tr '\n' ' ' < $scratch/lines.txt > $scratch/one.txt
sed 's/ 42 / 43 /g' $scratch/one.txt > $scratch/changed.txt
for name in lines one; do
    timeout 20 algdata export $scratch/$name.txt -f csv --sort bParameter,cParameter --columns deviceMac --head 5
    timeout 20 algdata export $scratch/$name.txt -f csv --sort=-deviceMac --columns deviceMac --head 2
done
timeout 20 algdata diff $scratch/lines.txt $scratch/changed.txt | tail -n 2
