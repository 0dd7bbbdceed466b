# The holes of a sparse file are zeros, and a file that is too large is refused by its stated size.
cd $scratch
cp $OLDPWD/good/apRank.txt rank.txt
cp rank.txt holes.txt
truncate -s 200000 holes.txt
truncate -s 2G large.txt
for format in gnu posix; do
    tar --format=$format -Scf $format.tar large.txt holes.txt rank.txt
    algdata check $format.tar
    echo "status $?"
done
