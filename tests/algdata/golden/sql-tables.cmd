algdata sql --schema
