: > $scratch/pat.txt; algdata show --kind pat-v2 --view loaded $scratch/pat.txt; wc -c < $scratch/pat.txt
