algdata audit --explain
algdata audit --explain father-cycle
algdata audit --explain father-cycle --format json
algdata audit --explain blank-line
algdata audit --explain father-cycle .
