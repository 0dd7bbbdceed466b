algdata sql --named
for question in $(algdata sql --named | cut -d ' ' -f 1); do
    echo "== $question"
    algdata sql home --named $question
done
cp home/* "$scratch"
cd "$scratch" || exit
# A cycle, a wrong strategy, a rank that is not the father's plus one, a clamped delay.
sed -i '/02 0a4e00000001/s/01 1/04 1/' ap_rank_index.txt
sed -i 's/^4 3 2/4 3 7/' ap_rank_index.txt
rm ap_node.txt ap_rank.txt bridging.txt
sed -i '1s/ [0-9]* *$/ 5000/' time_delay_re_0a4e00000004.txt
for question in father-cycle unknown-father rank-step strategy clamped-delays; do
    echo "== $question"
    algdata sql . --named $question
done
algdata sql . 'SELECT deviceMAC, fatherMAC, depth, attachment FROM tree'
algdata sql . 'SELECT file, line, rule FROM audit ORDER BY rule, line'
algdata sql . --named rank
algdata sql . nosuch --named decisions
