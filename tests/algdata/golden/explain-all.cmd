algdata check --explain
