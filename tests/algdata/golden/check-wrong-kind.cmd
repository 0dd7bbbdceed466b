algdata check --kind station good/score.txt
