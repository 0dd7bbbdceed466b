algdata show good/candidate.txt --view loaded
