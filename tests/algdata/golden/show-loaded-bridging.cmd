algdata show good/bridging.txt --view loaded
