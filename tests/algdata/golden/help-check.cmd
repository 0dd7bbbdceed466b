algdata check --help
