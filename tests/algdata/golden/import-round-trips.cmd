# The smallest and largest values that the module writes read back as the same bytes.
cat > $scratch/score.txt << END
a4c3f0000010  1 -0.00  0    0 340282346638528859811704183484516925440.00    0  1  2  3  4  5    1    2    3    4    5    1    2    3    4    5
a4c3f0000011  2 -1.50  0    0 0.01 65535 255  0  0  0  0 65535    0    0    0    0    0    0    0    0    0
END
echo 'a4c3f0000010 a4c3f0000011 -1 255' > $scratch/strategy.txt
for file in score.txt=score strategy.txt=alg-output; do
    for format in json ndjson csv; do
        algdata export $scratch/${file%=*} -k ${file#*=} -f $format |
            algdata import -k ${file#*=} - -o $scratch/back.txt &&
            cmp $scratch/${file%=*} $scratch/back.txt && echo "${file%=*} as $format comes back as it was"
    done
done
# The strategy is printed signed; its largest value is stored as -1.
echo '{"srcMAC":"a4c3f0000010","dstMAC":"a4c3f0000011","algStrategy":4294967295,"timeout":0}' |
    algdata import -k alg-output - -o $scratch/largest.txt
cat $scratch/largest.txt
algdata export $scratch/largest.txt -k alg-output -f ndjson --view loaded --columns algStrategy
for strategy in -2147483648 -2147483649 4294967296; do
    echo "{\"srcMAC\":\"a4c3f0000010\",\"dstMAC\":\"a4c3f0000011\",\"algStrategy\":$strategy,\"timeout\":0}" |
        algdata import -k alg-output -
done
