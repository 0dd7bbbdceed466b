algdata check damaged/apNodeNotANumber.txt
