algdata sql good "SELECT path FROM file WHERE path = 'good/station.txt'"
algdata sql good/station.txt "SELECT path, kind FROM file"
algdata sql good "SELECT count(*) AS n FROM file WHERE path IN ('good/../good/station.txt', 'good', '/etc/passwd', 'good//station.txt', '')"
algdata sql good good/ "SELECT _path, count(*) AS n FROM station GROUP BY 1"
