algdata check --explain no-such-rule
