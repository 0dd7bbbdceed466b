algdata export good/score.txt -f csv
