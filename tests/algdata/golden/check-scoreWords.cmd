algdata check damaged/scoreWords.txt
