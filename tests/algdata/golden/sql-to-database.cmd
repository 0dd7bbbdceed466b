algdata sql good -f sqlite -o $scratch/o.db 'SELECT deviceMAC, apRank, deviceMAC FROM ap_rank ORDER BY 1'
algdata sql $scratch -f sqlite -o $scratch/empty.db 'SELECT deviceMAC FROM ap_rank'
python3 - <<'P'
import os, sqlite3
for name in "o.db", "empty.db":
    database = sqlite3.connect(os.environ["scratch"] + "/" + name)
    print(database.execute("SELECT sql FROM sqlite_schema").fetchall(), database.execute("SELECT * FROM result").fetchall())
P
