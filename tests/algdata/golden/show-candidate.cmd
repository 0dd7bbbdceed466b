algdata show good/candidate.txt
