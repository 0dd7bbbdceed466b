algdata check damaged/apNodeTwice.txt
