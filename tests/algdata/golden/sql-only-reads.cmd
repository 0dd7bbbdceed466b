for query in "ATTACH 'x.db' AS x" "VACUUM" "VACUUM INTO 'x.db'" 'PRAGMA user_version = 1' 'PRAGMA writable_schema = 1' \
    "SELECT load_extension('x.so')" "SELECT fts3_tokenizer('simple')" "SELECT Fts3_Tokenizer('simple', X'0011223344556677')" 'CREATE TABLE x(a)' 'CREATE TEMP TABLE x AS SELECT 1' 'CREATE VIRTUAL TABLE x USING score' \
    'DROP TABLE score' 'DELETE FROM score' 'INSERT INTO score(apRank) VALUES(1)' 'UPDATE score SET apRank = 1' \
    'BEGIN' 'SAVEPOINT x' 'REINDEX' 'ANALYZE' 'DETACH main' 'INSERT INTO sqlite_schema VALUES(1,2,3,4,5)' \
    "SELECT * FROM pragma_table_info('score')"; do
    echo "$query"
    algdata sql good "$query"
    echo $?
done 2>&1
ls *.db x* 2>/dev/null
