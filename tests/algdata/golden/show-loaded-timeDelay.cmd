algdata show good/timeDelay.txt --view loaded
