algdata export good/timeDelay.txt
