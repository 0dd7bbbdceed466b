# A long name, sizes that are not those of the file, and the rest of a file of another volume.
cd $scratch
python3 - <<'END'
import io, tarfile
rank = b'a4c3f0000010 000000000000 0\n'
def save(name, path='rank.txt', kind=tarfile.REGTYPE, **fields):
    member = tarfile.TarInfo(path)
    member.type, member.size, member.pax_headers = kind, len(rank), fields
    with tarfile.open(name, 'w', format=tarfile.PAX_FORMAT) as archive:
        archive.addfile(member, io.BytesIO(rank))
save('long-name.tar', 'home/' * 100 + 'rank.txt')
save('large.tar', size='9' * 15)
save('negative.tar', size='-5')
save('no-number.tar', size='many')
save('long-header.tar', comment='x' * 3000000)
save('other-volume.tar', kind=b'M')
END
for archive in *.tar; do
    echo "== $archive"
    algdata check $archive 2>&1
    echo "status $?"
done
