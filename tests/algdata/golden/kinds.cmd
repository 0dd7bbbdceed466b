algdata kinds
