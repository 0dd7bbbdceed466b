# A page lacks an input that cannot be read, and says so.
cp -r home "$scratch/home"
cd "$scratch"
gzip -c home/ap_rank.txt | head -c 40 >home/rest.tar.gz
echo "notes of an engineer" >home/notes.txt
algdata report home -o report.html
echo "status $?"
grep -c 'Some inputs could not be read' report.html
