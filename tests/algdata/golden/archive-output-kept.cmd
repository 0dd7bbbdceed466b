# An archive that is truncated does not replace the output of a whole one.
cd $scratch
cp $OLDPWD/good/apRank.txt a.txt
tar -cf whole.tar a.txt
head -c 1024 whole.tar > cut.tar
algdata export whole.tar -f csv -o ranks.csv
algdata export cut.tar -f csv -o ranks.csv
echo "status $?"
cat ranks.csv
# The archive itself as the output.
algdata export whole.tar -f csv -o whole.tar
echo "status $?"
tar -tf whole.tar
