algdata export --help
