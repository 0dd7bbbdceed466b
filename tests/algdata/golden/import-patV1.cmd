algdata export good/patV1.txt | algdata import --kind pat-v1 -
