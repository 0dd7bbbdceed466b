algdata check
