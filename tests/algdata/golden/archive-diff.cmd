# Archives and directories are compared by the names in them.
cd $scratch
mkdir -p old/h1 old/h2 new/h1 new/h3
cp $OLDPWD/good/apRank.txt old/h1
cp $OLDPWD/good/apRank.txt old/h2
sed 's/ 1$/ 2/' old/h1/apRank.txt > new/h1/apRank.txt
cp old/h2/apRank.txt new/h3
tar --sort=name -cf old.tar -C old .
tar --sort=name -czf new.tar.gz -C new .
for pair in "old new" "old.tar new.tar.gz" "old new.tar.gz" "old.tar new" "old.tar old"; do
    algdata diff $pair
    echo "status $?"
done
algdata diff old.tar new.tar.gz -f csv
# An archive that cannot be read completely is not compared.
head -c 100 new.tar.gz > cut.tar.gz
algdata diff old.tar cut.tar.gz
echo "status $?"
mkdir both && cp cut.tar.gz both && cp old/h1/apRank.txt both
mkdir whole && cp new.tar.gz whole/cut.tar.gz
algdata diff both whole
echo "status $?"
algdata diff old.tar old/h1/apRank.txt
echo "status $?"
algdata diff old.tar missing.tar
echo "status $?"
