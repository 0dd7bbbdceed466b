algdata check damaged/apNodeClamped.txt
