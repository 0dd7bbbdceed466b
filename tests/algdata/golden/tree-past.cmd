cp home/* "$scratch"
cd "$scratch" || exit
# Links of the past fill gaps only: the log is the only file that has the link of 04.
rm ap_node.txt ap_rank.txt
sed -n 3p bridging.txt > bridging_log.txt
sed -i 3d bridging.txt
algdata tree .
# A log tells the newest father, the file of one device does not.
rm ap_rank_index.txt bridging.txt
{ cat bridging_log.txt; sed 's/0a4e00000002/0a4e00000003/' bridging_log.txt; } > bridging_re_0a4e00000004.txt
rm bridging_log.txt
algdata tree .
