algdata check --explain blank-line
