algdata show good/algOutput.txt --view loaded
