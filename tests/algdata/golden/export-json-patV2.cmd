algdata export good/patV2.txt
