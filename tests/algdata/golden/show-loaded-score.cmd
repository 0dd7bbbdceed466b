algdata show good/score.txt --view loaded
