sed '2s/ 1$/ 007/; 3s/ 1$/ +1/; 4s/ 2$/ -0/' good/apRank.txt > $scratch/rank.txt
sed '2s/ 0.50 / 00.50 /; 3s/ 0.33 / +0.33 /' good/score.txt > $scratch/score.txt
sed '1s/^2$/+02/' good/patV2.txt > $scratch/pat.txt
for name in rank score pat; do
    algdata check $scratch/$name.txt
done
algdata show $scratch/rank.txt --view loaded
