mkdir -p $scratch/h1/a $scratch/h1/b $scratch/h2/a
cp good/*.txt $scratch/h1/a/
cp good/*.txt $scratch/h1/b/
cp good/*.txt $scratch/h2/a/
cd $scratch
template='{home}/{night}/{what}.txt'
algdata sql . --path "$template" 'SELECT home, night, count(*) AS records FROM ap_rank GROUP BY 1, 2 ORDER BY 1, 2'
algdata sql . --path "$template" "SELECT DISTINCT home FROM file WHERE home IN ('h2', 'h9')"
algdata sql . --path "$template" "SELECT home, night FROM alg_output WHERE home = 'h1' AND night = 'b'"
algdata sql . --path "$template" "SELECT count(*) AS n FROM file WHERE home = '..' OR home = ''"
algdata sql . --path "$template" "SELECT a.home, b.home FROM alg_output AS a JOIN alg_output AS b ON b.home = a.home AND a.night < b.night"
algdata sql . --path 'ap-rank={home}/{night}/*.txt' "SELECT count(*) AS n FROM score"
for bad in '' '/x' 'a//b' '{' '{}' '{9}' '{a}{b}' '}' 'x=y' '{a*}' '.x/{a}' '{rssi}' '{path}' '{a}-{b}-{c}-{d}-{e}'; do
    algdata sql . --path "$bad" 'SELECT 1'
done
algdata sql . --path '{a}/{A}/x' 'SELECT 1'
