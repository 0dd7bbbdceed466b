# Where nothing can be read, an earlier page stays.
cd "$scratch"
tar cf - -C "$OLDPWD/home" . | gzip | head -c 40 >home.tar.gz
echo "the page of yesterday" >report.html
algdata report home.tar.gz -o report.html 2>&1
echo "status $?"
cat report.html
