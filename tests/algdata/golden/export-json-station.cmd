algdata export good/station.txt
