algdata show good/patV1.txt --view loaded
