algdata check good
