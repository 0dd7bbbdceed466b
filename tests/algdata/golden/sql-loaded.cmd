algdata sql good 'SELECT s.deviceMAC, s.band, s.rssi, l.rssi AS loaded FROM scanning AS s JOIN scanning_loaded AS l USING (_path, _record) ORDER BY _path, _record LIMIT 3'
