algdata check damaged/patV2Orders.txt
