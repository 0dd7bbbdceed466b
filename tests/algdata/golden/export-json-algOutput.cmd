algdata export good/algOutput.txt
