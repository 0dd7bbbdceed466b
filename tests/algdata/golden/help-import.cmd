algdata import --help
