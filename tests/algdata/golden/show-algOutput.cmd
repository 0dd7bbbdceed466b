algdata show good/algOutput.txt
