algdata --generate-man | sed '/^.TH/s/ 1 [0-9-]* "algdata [0-9.]*/ 1 DATE "algdata N/'
