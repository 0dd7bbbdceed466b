algdata show - --view loaded < good/scanning.txt
