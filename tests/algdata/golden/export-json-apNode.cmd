algdata export good/apNode.txt
