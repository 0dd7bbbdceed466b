algdata show good/score.txt
