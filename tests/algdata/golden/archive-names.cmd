# A name in an archive is data. A file that has no name that a file in a directory can have is not read.
cd $scratch
python3 - <<'END'
import io, tarfile, zipfile
rank = b'a4c3f0000010 000000000000 0\n'
names = ['/etc/rank', '../rank', 'a/../../rank', 'a//rank', 'a/./rank', 'a/..', './ok', 'back\\slash', 'new\nline',
         'C:/rank', 'a/.hidden', '.hidden/rank', '\u00e9\u4e16', '\x1b[31mred']
with tarfile.open('names.tar', 'w', format=tarfile.GNU_FORMAT) as archive:
    for name in names:
        member = tarfile.TarInfo(name)
        member.size = len(rank)
        archive.addfile(member, io.BytesIO(rank))
with zipfile.ZipFile('names.zip', 'w') as archive:
    for name in names:
        archive.writestr(zipfile.ZipInfo(name), rank)
END
for archive in names.tar names.zip; do
    algdata show $archive
    echo "status $?"
    algdata export $archive -f ndjson --columns apRank 2> /dev/null
done
find . -newer names.zip -type f
