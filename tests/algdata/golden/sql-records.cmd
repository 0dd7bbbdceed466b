algdata sql good 'SELECT * FROM score ORDER BY _path, _record LIMIT 4'
algdata sql good 'SELECT _path, _line, _record, band, rssi, patRate FROM score_band WHERE _record < 2 ORDER BY 1, 3, 4'
algdata sql good 'SELECT * FROM pat_entry ORDER BY _path, _record, entry LIMIT 3'
algdata sql good 'SELECT * FROM rank_entry ORDER BY _path, entry LIMIT 3'
