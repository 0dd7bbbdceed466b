algdata stats damaged/timeDelayClamped.txt --view loaded
