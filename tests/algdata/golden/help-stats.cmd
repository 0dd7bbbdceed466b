algdata stats --help
