# Links are not followed. The content of a hard link is under another name, so its records are missing.
cd $scratch
mkdir home
cp $OLDPWD/good/apRank.txt home/a.txt
ln -s a.txt home/symbolic
ln -s /etc home/outside
tar --sort=name -cf symbolic.tar home
for name in b c d e; do ln home/a.txt home/$name.txt; done
mkfifo home/fifo
tar --sort=name -cf hard.tar home
tar --sort=name --hard-dereference -cf files.tar home
for archive in symbolic hard files; do
    algdata check $archive.tar
    echo "status $?"
done
