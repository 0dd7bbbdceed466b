algdata check damaged/algOutputBlankFirst.txt
