for name in müller.txt $'\xe2\x80\xaegnp.txt' $'\xc2\x9b31m'; do
    LC_ALL=C.UTF-8 algdata show $scratch/$name
    LC_ALL=C algdata show $scratch/$name
done
