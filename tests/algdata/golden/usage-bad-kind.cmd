algdata show good --kind stations
