algdata show good/bridging.txt
