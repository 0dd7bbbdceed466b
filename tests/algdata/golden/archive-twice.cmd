# Which of two files with one name is meant is unknown, so it is an error.
cd $scratch
mkdir a b
cp $OLDPWD/good/apRank.txt a/rank.txt
cp $OLDPWD/damaged/apRankTwice.txt b/rank.txt
tar -cf twice.tar -C a rank.txt -C ../b ./rank.txt
algdata check twice.tar
echo "status $?"
tar -cf one.tar -C a rank.txt
tar -cf two.tar b
# Joined archives are read to the end.
cat one.tar two.tar > joined.tar
algdata check joined.tar
echo "status $?"
