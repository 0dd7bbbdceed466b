algdata sql --schema score_band
algdata sql --schema FILE
algdata sql --schema rank_entry_loaded
algdata sql --schema scor
