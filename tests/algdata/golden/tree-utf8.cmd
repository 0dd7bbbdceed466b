algdata tree home > "$scratch/utf8" && sed 's/^/ASCII: /' "$scratch/utf8"
LC_ALL=C.UTF-8 algdata tree home
