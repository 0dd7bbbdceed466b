cp home/* "$scratch"
cd "$scratch" || exit
sed -i 's/ 19  23/ 19 1234/' time_delay_re_0a4e00000004.txt
sed -i '2s/15   33 0.60  240/ 0    0 0.60    0/' score_re_0a4e00000004.txt
echo '0a4e00000001  0 1.00 15    0 1.00   80 20  0  0  0  0    0    0    0    0    0    0    0    0    0    0' >> score_re_0a4e00000004.txt
algdata audit .
