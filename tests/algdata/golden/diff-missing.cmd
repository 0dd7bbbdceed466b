# The message names what is missing, whatever the other side is.
for sides in 'good none' 'none good' 'none good/apRank.txt' 'good/apRank.txt none/a.txt'; do
    algdata diff $sides
    echo "status $?"
done
