algdata diff good/score.txt good/station.txt
