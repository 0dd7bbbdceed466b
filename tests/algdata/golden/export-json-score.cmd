algdata export good/score.txt
