cp home/* "$scratch"
cd "$scratch" || exit
sed -i 's/0a4e00000004 0a4e00000002/0a4e00000004 0a4e00000099/' ./*.txt
sed -i 's/^0a4e00000002/0a4e00000098/' score_re_0a4e00000004.txt
algdata audit .
