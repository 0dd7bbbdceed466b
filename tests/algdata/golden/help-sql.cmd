algdata sql --help
