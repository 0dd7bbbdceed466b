algdata stats good
