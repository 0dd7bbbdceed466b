algdata show good --where 'rssi LIKE'
