algdata sql good "SELECT DISTINCT path_part(_path, '{set}/{family}.txt', 'family') AS family FROM score"
algdata sql good "SELECT path_part(_path, '{set}/{family}.csv', 'family') AS family FROM score LIMIT 1"
algdata sql good "SELECT path_part(_path, '{set', 'set') FROM score"
echo $?
algdata sql good "SELECT path_part(_path, '{set}/*', 'sets') FROM score"
echo $?
