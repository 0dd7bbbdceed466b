cp home/* "$scratch"
cd "$scratch" || exit
for i in {1..256}; do echo "0a4e00000001 0aee00000001 0 6 $((i % 90))"; done > scanning.txt
for i in {1..64}; do sed -n "3s/ 32 / $((20 + i % 9)) /p" bridging.txt; done > bridging_log.txt
algdata audit .
algdata audit . --notes
algdata audit . --fail-on note
