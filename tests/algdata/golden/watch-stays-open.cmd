# A file that stays open is shown after its last write, but not a part of a line.
. ./watching.sh
cp good/algOutput.txt $scratch
start $scratch --format lines
exec 5>> $scratch/algOutput.txt
echo "a4c3f0000001 a4c3f0000002 1 5" >&5; shown 1
printf "a4c3f0000001 a4c3f0000003" >&5; sleep 1.2; echo " 1 5" >&5; shown 2
exec 5>&-
finish
