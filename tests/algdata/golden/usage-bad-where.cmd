algdata show good --where rssi
