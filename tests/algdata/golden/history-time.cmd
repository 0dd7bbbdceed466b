# The order of the files' times, of directories and of single files.
mkdir $scratch/a $scratch/b; cd $scratch
echo "a4c3f0000010 a4c3f0000011 1 10" > b/log.1; echo "a4c3f0000010 a4c3f0000011 1 20" > a/log.1
cp b/log.1 b/log.2; sed -i 's/10$/5/' b/log.2
touch -d '2026-01-01 10:00' b/log.2; touch -d '2026-01-01 11:00' b/log.1; touch -d '2026-01-01 12:00' a/log.1
algdata history . --field alg-output.timeout --kind alg-output --order time
algdata history . --field alg-output.timeout --kind alg-output --path '*/log.*' --order time --format json
algdata history b --field alg-output.timeout --path 'alg-output=b/log.{time}' --order time
