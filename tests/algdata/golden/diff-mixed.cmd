algdata diff good good/station.txt
