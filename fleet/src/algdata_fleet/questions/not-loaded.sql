-- What was not loaded, and why
--
-- Files that were refused, and shards that were quarantined.
SELECT day, home, _path AS path, reason FROM file WHERE status = 'refused'
UNION ALL
SELECT day, home, _path AS path, reason FROM quarantine
ORDER BY day, path
