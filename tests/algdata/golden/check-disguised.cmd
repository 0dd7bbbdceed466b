# The message names the form of the file, with --kind and without. In a directory, too, if the form hides a record file.
mkdir $scratch/data
iconv -f ASCII -t UTF-16 good/station.txt > $scratch/data/utf16.txt
iconv -f ASCII -t UTF-16BE good/station.txt > $scratch/data/utf16be.txt
iconv -f ASCII -t UTF-32 good/station.txt > $scratch/data/utf32.txt
iconv -f ASCII -t UTF-32LE good/station.txt > $scratch/data/utf32le.txt
gzip < good/station.txt > $scratch/data/station.txt.gz
tr '\n' '\r' < good/station.txt > $scratch/data/macintosh.txt
for name in utf16.txt utf16be.txt utf32.txt utf32le.txt station.txt.gz macintosh.txt; do
    algdata check $scratch/data/$name
    algdata check $scratch/data/$name --kind station
    algdata export $scratch/data/$name -f ndjson
    echo "status $?"
done
algdata check $scratch/data
algdata export $scratch/data
echo "status $?"
algdata export $scratch/data/station.txt.gz --kind station
