-- What was not loaded, and why
--
-- Files that were refused, and shards that were quarantined.
--
-- day         home         path                                                        reason
-- 2026-11-20  home0000007  2026-11-20/fw2.4-00000.tar.gz/home0000007/stations_fap.txt  it is UTF-16 text, expected plain text; the plain text is of kind station
-- 2026-11-20  home0000027  2026-11-20/fw2.4-00000.tar.gz/home0000027/stations_fap.txt  it is UTF-16 text, expected plain text; the plain text is of kind station
-- 2026-11-20  home0000047  2026-11-20/fw2.4-00000.tar.gz/home0000047/stations_fap.txt  it is UTF-16 text, expected plain text; the plain text is of kind station
-- 2026-11-20  home0000107  2026-11-20/fw2.4-00002.tar.gz/home0000107/stations_fap.txt  it is UTF-16 text, expected plain text; the plain text is of kind station
SELECT day, home, _path AS path, reason FROM file WHERE status = 'refused'
UNION ALL
SELECT day, home, _path AS path, reason FROM quarantine
ORDER BY day, path
