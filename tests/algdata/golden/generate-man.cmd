algdata --generate-man | sed '/^.TH/s/algdata [0-9.]*/algdata N/'
