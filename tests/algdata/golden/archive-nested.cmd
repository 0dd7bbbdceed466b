cd $scratch
mkdir home
cp $OLDPWD/good/apRank.txt home/a.txt
tar -cf home/b.tar.gz home/a.txt
cp home/a.txt home/c.txt
tar --sort=name -cf nested.tar home
algdata stats nested.tar --columns apRank
echo "status $?"
