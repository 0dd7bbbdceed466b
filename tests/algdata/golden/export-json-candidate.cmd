algdata export good/candidate.txt
