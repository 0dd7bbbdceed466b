algdata --complete ""
