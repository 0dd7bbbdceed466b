algdata show damaged/apRankBlankLine.txt damaged/timeDelayBlankTail.txt --view loaded
