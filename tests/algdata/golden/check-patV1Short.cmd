algdata check damaged/patV1Short.txt
