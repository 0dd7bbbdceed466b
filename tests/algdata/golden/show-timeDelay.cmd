algdata show good/timeDelay.txt
