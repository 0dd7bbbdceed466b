cp home/* "$scratch"
cd "$scratch" || exit
# A cycle of two, a device that is its own father, an unknown father, and no father at all.
cat > ap_rank_index.txt <<'END'
7 6 1 5
0a4e00000001 000000000000 0 9
0a4e00000002 0a4e00000001 1 9
0a4e00000003 0a4e00000004 2 9
0a4e00000004 0a4e00000003 2 9
0a4e00000005 0a4e00000005 2 9
0a4e00000006 0a4e00000099 2 9
0a4e00000007 0a4e00000006 3 9
END
echo 0a4e00000008 000000000000 1 > ap_rank.txt
algdata tree ap_rank_index.txt ap_rank.txt
algdata tree ap_rank_index.txt ap_rank.txt --columns deviceMAC,fatherMAC,depth,rootPath
algdata tree ap_rank_index.txt ap_rank.txt --format dot
