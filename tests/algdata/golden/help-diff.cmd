algdata diff --help
