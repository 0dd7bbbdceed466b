# What is missing or damaged in an archive is an error, also if the files before it could be read.
cd $scratch
mkdir home
for name in a b c; do cp $OLDPWD/good/apRank.txt home/$name.txt; done
tar --sort=name --owner=0 --group=0 --mtime=@0 -cf whole.tar home
zstd -q whole.tar -o whole.tar.zst
python3 - <<'END'
import gzip, zipfile, zlib
whole = open('whole.tar', 'rb').read()
def save(name, data):
    open(name, 'wb').write(data)
save('empty.tar', b'')
save('random.tar', bytes(i * i % 251 for i in range(5000)))
save('without-end.tar', whole[:3584])
save('cut-in-file.tar', whole[:3100])
save('cut-in-header.tar', whole[:2700])
save('header.tar', whole[:2560] + b'x' + whole[2561:])
save('bytes-after-end.tar', whole + b'more')
save('zeros-after-end.tar', whole + bytes(102400))
save('record.tar', whole[1024:1100])
zipped = gzip.compress(whole)
save('whole.tar.gz', zipped)
save('members.tar.gz', gzip.compress(whole[:2000]) + gzip.compress(whole[2000:]) + bytes(500))
save('cut.tar.gz', zipped[:-1])
save('bytes-after-end.tar.gz', zipped + b'more')
stored = bytearray(gzip.compress(whole, compresslevel=0))
stored[stored.find(b'a4c3')] ^= 2
save('changed.tar.gz', stored)
packed = open('whole.tar.zst', 'rb').read()
save('cut.tar.zst', packed[:-1])
save('changed.tar.zst', packed[:-1] + bytes([packed[-1] ^ 1]))
with zipfile.ZipFile('whole.zip', 'w') as archive:
    archive.write('home/a.txt')
    archive.write('home/b.txt')
packed = open('whole.zip', 'rb').read()
save('cut.zip', packed[:-1])
save('cut-in-file.zip', packed[:100])
save('changed.zip', packed.replace(b'a4c3', b'b4c3', 1))
encrypted = bytearray(packed)
for signature, flags in (b'PK\3\4', 6), (b'PK\1\2', 8):
    encrypted[encrypted.find(signature) + flags] |= 1
save('encrypted.zip', encrypted)
volumes = bytearray(packed)
volumes[volumes.find(b'PK\5\6') + 4] = 1
save('volumes.zip', volumes)
save('zip.tar.gz', gzip.compress(packed))
with zipfile.ZipFile('no-files.zip', 'w'):
    pass
END
tar -cf no-files.tar -T /dev/null
mkfifo fifo.tar
for archive in *.tar *.gz *.zst *.zip missing.zip; do
    echo "== $archive"
    timeout 10 algdata check $archive 2>&1
    echo "status $?"
done
