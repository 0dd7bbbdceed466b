algdata stats good/scanning.txt good/timeDelay.txt -f csv
