algdata sql damaged 'SELECT count(*) AS n, count(apRank) AS whole FROM ap_rank'
echo $?
algdata sql damaged 'SELECT status, count(*) AS n FROM file GROUP BY 1 ORDER BY 1'
algdata sql damaged 'SELECT severity, rule, count(*) AS n FROM finding GROUP BY 1, 2 ORDER BY 1, 2'
printf 'hello\n' > $scratch/x
algdata sql $scratch 'SELECT * FROM error'
algdata sql $scratch/x 'SELECT * FROM score'
echo $?
mkdir $scratch/homes
printf "\037\213\b" > $scratch/homes/cut.tar.gz
cp good/score.txt $scratch/homes
algdata sql $scratch/homes 'SELECT * FROM error' --format csv
echo $?
