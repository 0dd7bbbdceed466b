mkdir -p $scratch/data/h1 $scratch/data/h2 $scratch/tars
cp good/*.txt $scratch/data/h1/
cp good/alg*.txt $scratch/data/h2/
cd $scratch
tar -C data -czf tars/night.tar.gz h1 h2
cp tars/night.tar.gz nested.tar.gz
algdata sql tars/night.tar.gz 'SELECT _archive, _member, srcMAC FROM alg_output ORDER BY 2'
algdata sql tars --path '{night}.tar.gz/{home}/*.txt' "SELECT night, home, _path FROM alg_output WHERE home = 'h2'"
algdata sql tars --path '{night}.tar.gz/{home}/*.txt' "SELECT night, home, count(*) AS files FROM file GROUP BY 1, 2"
algdata sql tars "SELECT kind FROM file WHERE path = 'tars/night.tar.gz/h1/score.txt'"
algdata sql tars 'SELECT count(*) AS bands FROM score JOIN score_band USING (_path, _record)'
head -c 300 tars/night.tar.gz > cut.tar.gz
algdata sql cut.tar.gz 'SELECT count(*) AS files FROM file'
echo $?
tar -cf two.tar tars/night.tar.gz data/h2
algdata sql two.tar 'SELECT path, status FROM file'
echo $?
echo no > no.zip
algdata sql no.zip 'SELECT path, status FROM file'
