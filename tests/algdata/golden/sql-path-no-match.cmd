# A template that no file matches is an error; a value that no path has is none.
algdata sql good --path '{home}/{night}/*.txt' 'SELECT home, count(*) AS n FROM file GROUP BY 1'
echo $?
algdata sql good --path '{what}.txt' "SELECT count(*) AS n FROM file WHERE what = 'nosuch'"
echo $?
