algdata export good/bridging.txt
