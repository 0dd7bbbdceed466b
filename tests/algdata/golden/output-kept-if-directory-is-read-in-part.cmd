# A record file of a directory that has to be left out is missing in the result, so the old output
# file stays. Files that are not record files are no part of the result.
try() {
    rm -rf $scratch/home
    mkdir $scratch/home
    cp good/apRank.txt "$1" $scratch/home
    for command in export show stats 'export -f csv'; do
        echo old > $scratch/good
        algdata $command $scratch/home -o $scratch/good
        status=$?
        grep -q old $scratch/good && kept=old || kept=new
        echo "$(basename $1), $command: status $status, $kept"
    done
}
# Several kinds match.
printf 'a4c3f0000010 a4c3f0000011 1 60\na4c3f0000012 a4c3f0000011 1 60\n' > $scratch/ambiguous.txt
try $scratch/ambiguous.txt
iconv -f ascii -t utf-16 good/station.txt > $scratch/utf16.txt
try $scratch/utf16.txt
tr '\n' '\r' < good/station.txt > $scratch/returns.txt
try $scratch/returns.txt
printf '\n\n' > $scratch/blank.txt
try $scratch/blank.txt
try damaged/zeroed.txt
# Not record files, and an empty one.
try damaged/unknown.txt
try damaged/empty.txt
gzip < good/station.txt > $scratch/station.gz
try $scratch/station.gz
