algdata show good/apNode.txt --view loaded
