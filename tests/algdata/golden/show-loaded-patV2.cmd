algdata show good/patV2.txt --view loaded
