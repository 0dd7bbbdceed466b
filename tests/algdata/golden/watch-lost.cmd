# More changes than the system keeps: all files are read again.
. ./watching.sh
cp good/algOutput.txt $scratch
start $scratch --format lines
kill -STOP $watch
python3 - $scratch << 'END'
import pathlib, sys
limit = int(pathlib.Path("/proc/sys/fs/inotify/max_queued_events").read_text())
files = [open(pathlib.Path(sys.argv[1], name), "wb", buffering=0) for name in ("one", "other")]
for _ in range(limit // 2 + 100):
    for file in files:
        file.write(b".")
END
mkdir $scratch/new; cp good/apRank.txt $scratch/new
sed -i "s/ 30$/ 31/" $scratch/algOutput.txt
kill -CONT $watch; shown 6
sed -i 1d $scratch/new/apRank.txt; shown 7
finish
