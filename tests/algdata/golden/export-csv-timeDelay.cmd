algdata export good/timeDelay.txt -f csv
