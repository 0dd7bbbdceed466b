algdata kinds --help
