echo good > $scratch/good.txt
: | algdata import --kind ap-rank - -o $scratch/good.txt
echo "status $?, $(cat $scratch/good.txt)"
echo '[]' | algdata import --kind ap-rank - -o $scratch/good.txt
echo "status $?, $(cat $scratch/good.txt)"
algdata export none.txt | algdata import --kind ap-rank - -o $scratch/good.txt
echo "status $?, $(cat $scratch/good.txt)"
echo 'deviceMAC,ethFatherMAC,apRank' | algdata import --kind ap-rank - -o $scratch/good.txt
echo "status $?, $(cat $scratch/good.txt)"
: | algdata import --kind ap-rank - -o $scratch/good.txt --allow-empty
echo "status $?, $(wc -c < $scratch/good.txt) bytes"
