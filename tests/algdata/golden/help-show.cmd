algdata show --help
