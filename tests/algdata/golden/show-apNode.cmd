algdata show good/apNode.txt
