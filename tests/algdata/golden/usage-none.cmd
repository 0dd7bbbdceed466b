algdata
