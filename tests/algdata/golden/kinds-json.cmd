algdata kinds --kind alg-output -f json
