#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Writes the seeds of the fuzz targets, or checks that they are up to date.

A seed is a record file followed by the choices of the run. A target reads its
choices backwards from the last byte: first the message level, then the choices in
the order in which the target's source asks for them. The name of a seed says what
the run does, and to which file.

    fuzz/makeSeeds.py            replaces the seeds in fuzz/seeds
    fuzz/makeSeeds.py --check    lists the seeds that are not up to date, and writes nothing
"""
import argparse
import hashlib
import io
import re
import shutil
import struct
import sys
import tarfile
import zipfile
import zlib
from pathlib import Path

A, B, C, NOBODY = "0A1B2C3D4E5F", "102030405060", "           c", "000000000000"
SEEDS = Path(__file__).resolve().parent / "seeds"
FATHERS = {A: B, B: "A0A1A2A3A4A5", C: NOBODY}

# The sizes by the names that alg/capacities.h gives them.
HEADER = Path(__file__).resolve().parent.parent / "alg/capacities.h"
SIZES = {name: int(value) for name, value in re.findall(r"(ALG_\w+) = (\d+)", HEADER.read_text())}
BANDS = SIZES["ALG_BANDS"]
PAT_CAPACITY = SIZES["ALG_PAT_CAPACITY"]
DELAY_SAMPLES = SIZES["ALG_DELAY_SAMPLES"]
RANK_INDEX_CAPACITY = SIZES["ALG_RANK_INDEX_CAPACITY"]
FAP_BRIDGING_CAP = SIZES["ALG_FAP_BRIDGING_CAP"]
STATION_CAP = SIZES["ALG_STATION_CAP"]
SCANNING_CAP = SIZES["ALG_SCANNING_CAP"]
TIME_DELAY_CAP = SIZES["ALG_TIME_DELAY_CAP"]

# Choices that mean the same in several targets.
LOG_ALL = 0                  # the level: 1 logs nothing, 0 and 2 to 15 log everything
COUNT_3 = 6                  # a count of 3: the choice minus 3
PIECE_OF_FILE = 0            # a MAC is a piece of the file if its second choice is even


def mac(length, at=0):
    """The choices of a MAC: the piece of the file that begins at `at` and has this length."""
    return [length, PIECE_OF_FILE, at]


def record(byte, *macs):
    """The choices of a record filled with one repeated byte, followed by those of its MACs."""
    return [0, byte] + [choice for one_mac in macs for choice in one_mac]


# ---- The files ----------------------------------------------------------------

def lines(form):
    """A line for each of three devices."""
    return [form.format(device=device, father=FATHERS[device], number=i) for i, device in enumerate(FATHERS)]


BANDS_ALL = "10 100 200 3 1 2 5 80 9 36 0 " * BANDS
DEFAULT_PAT = "".join(f"0 {band} {1 if band == 0 else 3} {mcs} 64 46094\n"
                      for band in range(BANDS) for mcs in range(3))
RECORDS = {
    "fileHelpers": ["a\n", "\n", "b"],
    "apNodeInfo": lines("{device} {father} 10 20 30 40 95 60 255 1 200 10000 10001 65535 0 7 8 9 10 10001 "
                        "1200 1 2 3 4 5\n"),
    "apAllInfo": lines("1 2 {device} {father} 50 300 60 1000 7 " + BANDS_ALL + "\n"),
    "bridgingInfo": lines("{device} {father} " + "40 866 433 9 8 " * BANDS + "\n"),
    "stationInfo": lines("{number:3} {device} {father}  1   40  866  433   12 7 5 2 9 3 1 90\n"),
    "candidateApInfo": lines("{device} 1 1 200 866 5 2 9 2\n"),
    "patParameter": [f"1\n{NOBODY} 15\n", DEFAULT_PAT],
    "scanningInfo": lines("{device} {father}  1  36  40\n"),
    "timeDelayInfo": lines("{device}   0   1   5  10 999 1000 1001 65535" + "   3" * 7 + "\n"),
    "scoreInfo": lines("{device}  1 0.85  3   12 1.25  866 40 50 60  0 255  866    1    2    3 65535"
                       "    5    6    7    8    9\n"),
    "apRankInfo": lines("{device} {father} 2\n"),
    "apRankIndexInfo": ["2 1 2 100\n", f"{A} {B} 1 866\n", f"{B} {FATHERS[B]} 1 866\n"],
    "apAlgOutputInfo": [f"{A} {B} 2 30\n", f"{B} {FATHERS[B]} 3 255\n", "c d -1 256\n"],
}


def damaged(records):
    """Damaged variants of the file of these records."""
    text, first = "".join(records), records[0]
    rest = text[len(first):]
    return {
        "blank-line": first + "\n" + rest,
        "letters": first.replace("1", "x"),
        "long-line": first[:-1] + "9" * 1100 + "\n" + rest,
        "torn": text[:-9],
        "zero-block": first + "\0" * 40 + rest[40:],
    }


# ---- What the targets do with the files ----------------------------------------

# {target: {operation: the choices after the level}}
OPERATIONS = {
    "fileHelpers": {"count": [0], "touch": [1]},
    "apNodeInfo": {"read": [0, 3], "write": [1, 3]},
    "apAllInfo": {
        "read-bounded": [0, COUNT_3],
        "read-as-stored": [1, COUNT_3],
        "write-and-read-detail": [2, COUNT_3],
        "delete-first": [4, COUNT_3] + record(7, mac(12, 4), mac(12, 4)),
        "update-with-null": [5, COUNT_3],
        "update-first": [6, COUNT_3] + record(7, mac(12, 4), mac(12, 4)),
        "update-unknown": [6, COUNT_3] + record(7, mac(3)),
    },
    "bridgingInfo": {
        "update-with-null": [0, COUNT_3],
        "write": [1, COUNT_3],
        "add-on-fap": [2, COUNT_3] + record(7, mac(12), mac(12, 13)),
        "update-on-re": [3, COUNT_3] + record(7, mac(12), mac(12, 13)),
        "read": [4, COUNT_3],
    },
    "stationInfo": {
        "read-twice": [0, COUNT_3],
        "write": [1, COUNT_3],
        "append": [2, COUNT_3] + record(9, mac(12, 4), mac(12, 4)),
        "append-null": [3, COUNT_3],
        "read": [5, COUNT_3],
    },
    "candidateApInfo": {"read": [0, COUNT_3], "write": [1, COUNT_3]},
    "patParameter": {
        "update": [1, COUNT_3, 0, 5],
        "write": [2, COUNT_3, 0, 5],
        "initialise": [3, COUNT_3, 0, 5] + mac(12, 2),
        "read": [4, COUNT_3],
        "convert-any-floats": [7, COUNT_3, 1, 200, 61],
    },
    "scanningInfo": {
        "write": [0, COUNT_3],
        "append-one": [1, 4],
        "append-six": [1, 9],
        "delete-first": [3, COUNT_3] + mac(12),
        "append-null": [4, COUNT_3],
        "read-with-another-compensation": [5, COUNT_3] + mac(12) + [9],
    },
    "timeDelayInfo": {
        "write": [0, COUNT_3],
        "update-or-append-first": [1, COUNT_3] + record(7, mac(12)),
        "append-or-update-first": [2, COUNT_3] + record(7, mac(12)),
        "empty": [3, COUNT_3],
        "append-null": [4, COUNT_3],
        "update-with-null": [5, COUNT_3],
        "read": [6, COUNT_3],
    },
    "scoreInfo": {"write": [0, COUNT_3], "look-for-a-record": [1, COUNT_3], "read": [3, COUNT_3]},
    "apRankInfo": {
        "write": [0, COUNT_3],
        "update-first": [1, COUNT_3] + record(7, mac(12), mac(12, 13)),
        "update-any": [2, COUNT_3],
        "update-with-null": [3, COUNT_3],
        "read": [4, COUNT_3],
    },
    "apRankIndexInfo": {"read": [0], "write": [1, 3, 1, 2, 3, 4]},
    "apAlgOutputInfo": {"read": [0], "write": [1, 3, 1, 2, 3, 4]},
}

# What reads a damaged file, where it is not called "read".
READS = {"fileHelpers": "count", "apAllInfo": "read-bounded",
         "scanningInfo": "read-with-another-compensation"}

SHORT_RANK = f"{A} {B} 1 866\n"
# Files of a special length or form: {target: {name: (file, choices)}}
SPECIAL = {
    "fileHelpers": {"count-slices-of-a-long-line": ("x" * 3000, [0])},
    "apAllInfo": {"read-detail": (f"{A} {B} 50 300 60 1000 " + BANDS_ALL + "\n" +
                                  f"{B} {FATHERS[B]} 50 300 60 1000 " + BANDS_ALL + "\n", [3, 5])},
    "bridgingInfo": {"add-on-fap-at-cap": (("a b " + "1 2 3 4 5 " * BANDS + "\n") * FAP_BRIDGING_CAP,
                                           [2, COUNT_3] + record(7, mac(12), [1, PIECE_OF_FILE, 13]))},
    "stationInfo": {
        "append-at-cap": ("1 a b 1 2 3 4 5 6 7 8 9 1 2 3\n" * STATION_CAP,
                          [2, 4] + record(9, mac(1, 2), mac(1, 2))),
        "append-past-cap": ("1 a b\n" * 200, [2, 140]),
    },
    "patParameter": {
        "read-version-1": ((A + " 64" * PAT_CAPACITY + " 46094" * PAT_CAPACITY + "\n") * 2, [0, 5]),
        "read-two-devices": (f"2\n{A} 1\n1 0 1 0 64 46094\n{B} 2\n0 1 3 0 1 2\n0 1 3 1 1 2\n", [6, COUNT_3]),
        "read-too-many-entries": (f"1\n{A} {PAT_CAPACITY + 1}\n" + "1 2 3 4 5 6\n" * (PAT_CAPACITY + 1),
                                  [5, COUNT_3]),
    },
    "scanningInfo": {
        "append-at-cap": ("a b 1 2 3\n" * SCANNING_CAP, [1, 4]),
        "append-past-cap": ("a b 1 2 3\n" * 200, [2, 150]),
    },
    "timeDelayInfo": {"update-at-cap": (("a" + " 1" * DELAY_SAMPLES + "\n") * TIME_DELAY_CAP,
                                        [1, COUNT_3] + record(7, mac(1)))},
    "scoreInfo": {"read-floats": ("a 1 nan 2 3 inf 4 1 1 1 1 1\nb 1 1e39 2 3 -0x1p3 4\n", [3, COUNT_3])},
    "apRankIndexInfo": {
        "read-largest-header": ("1 255 4294967295 4294967295\n" + SHORT_RANK, [0]),
        "read-full": (f"{RANK_INDEX_CAPACITY} 0 0 0\n" + SHORT_RANK * RANK_INDEX_CAPACITY, [0]),
        "read-too-many-lines": ("2 0 0 0\n" + SHORT_RANK * (RANK_INDEX_CAPACITY + 1), [0]),
        "read-too-many-stated": (f"{RANK_INDEX_CAPACITY + 1} 0 0 0\n" +
                                 SHORT_RANK * (RANK_INDEX_CAPACITY + 1), [0]),
    },
}


def seed(text, choices):
    """The file followed by the choices, the first choice last."""
    return text.encode() + bytes(reversed([LOG_ALL] + choices))


def record_seeds():
    for target, operations in OPERATIONS.items():
        records = RECORDS[target]
        files = {"empty": "", "one": records[0], "all": "".join(records)}
        for operation, choices in operations.items():
            for name, text in files.items():
                yield target, f"{operation}-{name}", seed(text, choices)
        for name, text in damaged(records).items():
            read = READS.get(target, "read")
            yield target, f"{read}-{name}", seed(text, operations[read])
        for name, (text, choices) in SPECIAL.get(target, {}).items():
            yield target, name, seed(text, choices)


def text_seeds():
    """Inputs of the text layer: 48 random choices, then whether to read a stream, read lines or print."""
    files = {f"{target}-all": "".join(RECORDS[target])
             for target in ("bridgingInfo", "stationInfo", "timeDelayInfo", "scoreInfo")}
    for target, name in (("bridgingInfo", "torn"), ("bridgingInfo", "long-line"),
                         ("scanningInfo", "long-line"), ("scoreInfo", "zero-block")):
        files[f"{target}-{name}"] = damaged(RECORDS[target])[name]
    files["scoreInfo-floats"] = SPECIAL["scoreInfo"]["read-floats"][0]
    files["bridgingInfo-at-cap"] = SPECIAL["bridgingInfo"]["add-on-fap-at-cap"][0]
    for operation, name in enumerate(("stream", "lines", "print")):
        for file, text in files.items():
            chances = hashlib.sha512(f"{name}-{file}".encode()).digest()[:48]
            yield "text", f"{name}-{file}", seed(text, list(chances) + [operation])


def trip_seeds():
    """A round trip for each kind of record; the values of the records are the bytes before the choices."""
    for kind in range(13):
        values = bytes((37 * kind + 91 * i) % 251 for i in range(180))
        yield "roundTrip", f"kind-{kind:02}", values + bytes(reversed([LOG_ALL, kind, 5]))


# The choices of the targets of algdata: form, then kind by its number in formats/formats.h.
JSON, NDJSON, CSV = 0, 1, 2
LOADED_OR_ROUND = 129        # a multiple of 3, so that the form is JSON
BY_CONTENT = 255
PAT_V2, SCORE, AP_RANK = 7, 10, 11


def algdata_seeds():
    """Record files to read, with the kind by their content, and texts to import."""
    for target, records in RECORDS.items():
        text = "".join(records)
        for name, variant in {"all": text, **damaged(records)}.items():
            yield "algdataReading", f"{target}-{name}", variant.encode() + bytes([JSON, BY_CONTENT])
        yield "algdataReading", f"{target}-loaded", text.encode() + bytes([LOADED_OR_ROUND, BY_CONTENT])
    device = A.lower()
    rank = f'{{"deviceMAC":"{device}","ethFatherMAC":"{NOBODY}","apRank":1}}'
    table = f"deviceMAC,ethFatherMAC,apRank\n{device},{NOBODY},1\n"
    score = (f'[{{"fatherMAC":"{device}","apRank":1,"hopsFactor":0.855,"timeDelayTestCnt":15,'
             '"timeDelayAverage":19,"timeNormalization":0.7,"thrputPredict":1000,'
             '"rssi":[50,43,42,39,0],"negoRate":[1,2,3,4,5],"patRate":[1,2,3,4,65535]}]')
    pat = (f'[{{"deviceMac":"{device}","commonPatNum":1,"singlePat":[{{"isChanged":2,"bandOrder":0,'
           '"channelWidthOrder":1,"mcsOrder":0,"paraB":64,"paraC":43932}]}]')
    for name, text, form, kind in (
            ("ap-rank-json", f"[{rank}]", JSON, AP_RANK),
            ("ap-rank-ndjson", f"{rank}\n{rank}\n", NDJSON, AP_RANK),
            ("ap-rank-csv", table, CSV, AP_RANK),
            ("score-rounded", score, LOADED_OR_ROUND, SCORE),
            ("score-refused", score, JSON, SCORE),
            ("pat-entries", pat, JSON, PAT_V2),
            ("deep", "[" * 2000, JSON, AP_RANK)):
        yield "algdataImport", name, text.encode() + bytes([form, kind])


# ---- Archives -----------------------------------------------------------------

def tar(*members, end=1024):
    """A tar archive of files, each a name with its bytes, and of other entries, made by entry()."""
    return b"".join(one if isinstance(one, bytes) else entry(*one) for one in members) + bytes(end)


def entry(name, content=b"", kind=tarfile.REGTYPE, target="", fields=None):
    """One entry of a tar archive; `fields` are those of an extended header."""
    info = tarfile.TarInfo(name)
    info.type, info.linkname, info.size, info.pax_headers = kind, target, len(content), fields or {}
    header = info.tobuf(tarfile.PAX_FORMAT if fields else tarfile.GNU_FORMAT)
    return header + content + bytes(-len(content) % 512)


def gzipped(content):
    """gzip without compression, which is the same bytes with every version of zlib."""
    size = len(content)
    return (b"\x1f\x8b\x08\0\0\0\0\0\0\xff" + struct.pack("<BHH", 1, size, size ^ 0xffff) + content
            + struct.pack("<II", zlib.crc32(content), size))


def zstd(content):
    """One zstd frame with one block that is not compressed."""
    size = len(content)
    block = struct.pack("<I", size << 3 | 1)[:3] + content
    return b"\x28\xb5\x2f\xfd" + struct.pack("<BH", 0x60, size - 256) + block


def zipped(*members):
    made = io.BytesIO()
    with zipfile.ZipFile(made, "w") as archive:
        for name, content in members:
            archive.writestr(zipfile.ZipInfo(name), content)
    return made.getvalue()


def archive_seeds():
    rank = "".join(RECORDS["apRankInfo"]).encode()
    score = "".join(RECORDS["scoreInfo"]).encode()
    files = ("h1/rank.txt", rank), ("./h1/score.txt", score)
    encrypted = bytearray(zipped(*files))
    for signature, flags in (b"PK\3\4", 6), (b"PK\1\2", 8):
        encrypted[encrypted.find(signature) + flags] |= 1
    sparse = {"GNU.sparse.size": "4096", "GNU.sparse.numblocks": "1", "GNU.sparse.map": "1024,1"}
    for name, content in {
            "tar": tar(*files),
            "tar-gzip": gzipped(tar(*files)),
            "tar-zstd": zstd(tar(*files)),
            "zip": zipped(*files),
            "zip-encrypted": bytes(encrypted),
            "zip-without-directory": zipped(*files)[:-60],
            "tar-without-end": tar(*files, end=0),
            "tar-truncated": tar(*files)[:700],
            "tar-gzip-truncated": gzipped(tar(*files))[:-4],
            "tar-twice": tar(*files) + tar(*files),
            "tar-nested": tar(("in.zip", zipped(*files)), *files),
            "tar-names": tar(("/a", rank), ("../b", rank), ("c//d", rank), (".e/f", rank), ("g\n\\h", rank)),
            "tar-links": tar(*files, entry("hard", kind=tarfile.LNKTYPE, target="h1/rank.txt"),
                             entry("symbolic", kind=tarfile.SYMTYPE, target="/etc/passwd"),
                             entry("device", kind=tarfile.CHRTYPE), entry("directory", kind=tarfile.DIRTYPE)),
            "tar-extended": tar(entry("long", rank, fields={"path": "h/" * 150 + "rank", "mtime": "1.5"})),
            "tar-sparse": tar(entry("sparse", rank, fields=sparse)),
            "tar-large": tar(entry("large", rank, fields={"size": "9" * 15}))}.items():
        yield "algdataArchive", name, content


# ---- Queries, templates and filters ----------------------------------------------------

QUERIES = {
    "all": "SELECT * FROM ap_rank",
    "hidden": "SELECT _path, _archive, _member, _line, _record, _size FROM score",
    "paths": "SELECT DISTINCT home, night FROM file WHERE home IN ('h1', 'h2', 'h1') AND night = 'a'",
    "paths-or": "SELECT home FROM ap_rank WHERE home = 'h1' OR night = 'b'",
    "path-number": "SELECT count(*) FROM ap_rank WHERE home = 1 OR what <> X'61' OR night IS NULL",
    "record": "SELECT deviceMAC FROM ap_rank WHERE _record = 1 AND _path LIKE '%h1%'",
    "mac": "SELECT name_of(deviceMAC), deviceMAC FROM ap_rank WHERE deviceMAC = '0a:1b:2c:3d:4e:5f'",
    "join": "SELECT a.home, b.home FROM ap_rank a LEFT JOIN alg_output b ON b.srcMAC = a.deviceMAC",
    "natural": "SELECT * FROM ap_rank NATURAL JOIN score JOIN name USING (mac)",
    "group": "SELECT home, avg(apRank), group_concat(deviceMAC) FROM ap_rank GROUP BY 1 HAVING count(*)",
    "bands": "SELECT fatherMAC, max(rssi) FROM score_band GROUP BY 1 ORDER BY 2 DESC LIMIT 3 OFFSET 1",
    "window": "SELECT rank() OVER (PARTITION BY home ORDER BY apRank ROWS 1 PRECEDING) FROM ap_rank",
    "recursive": "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 9) SELECT * FROM n",
    "correlated": "SELECT (SELECT max(apRank) FROM ap_rank b WHERE b.home = a.home) FROM ap_rank a",
    "exists": "SELECT 1 FROM file f WHERE NOT EXISTS (SELECT 1 FROM ap_rank WHERE _path = f.path)",
    "loaded": "SELECT * FROM score_loaded UNION ALL SELECT * FROM score",
    "finding": "SELECT rule, count(*) FROM finding GROUP BY rule UNION SELECT message, 0 FROM error",
    "cast": "SELECT CAST(apRank AS TEXT) || X'00ff', 1e999, -9223372036854775808, 0x7f FROM ap_rank",
    "collate": "SELECT home COLLATE NOCASE IN ('H1') FROM file ORDER BY home COLLATE mac",
    "text": "SELECT printf('%s %5.2f%q', home, 1.5, 'x'), hex(zeroblob(9)), replace(home, 'h', '') FROM file",
    "json": "SELECT json_group_object(home, json_array(apRank)), j.key FROM ap_rank, json_each('[1,2]') j",
    "values": "VALUES (1, 'a'), (2, NULL)",
    "explain": "EXPLAIN QUERY PLAN SELECT * FROM ap_rank WHERE home = 'h1'",
    "write": "INSERT INTO ap_rank(apRank) VALUES (1)",
    "attach": "ATTACH 'x.db' AS x",
    "vacuum": "VACUUM INTO 'x.db'",
    "pragma": "SELECT * FROM pragma_table_info('ap_rank')",
    "two": "SELECT 1; SELECT 2",
    "parameter": "SELECT ?1, :a, @b, $c",
    "no-column": "SELECT 'rsi',\n  rsi FROM score_band -- rsi",
    "no-table": "SELECT * FROM scor",
    "not-complete": "SELECT (1",
    "nul": "SELECT 1\0, 2",
    "not-utf-8": "SELECT '\udcff\udc80' AS \"\udcc3\" FROM [file] WHERE `home` = 'h\udcff'",
    "deep": "SELECT " + "(" * 200 + "1" + ")" * 200,
}
TEMPLATES = {
    "score": ("{home}/{night}/score_re_{device}.txt", "h1/a/score_re_x.txt", "", "+h1", "", "+x+y"),
    "path": ("{home}/{night}/{file}", "h1/a/rank.txt", "h1/a/rank.txt"),
    "member": ("{home}/{night}/*", "h3.tar/a/b", "h3.tar/a/score_re_x.txt", "+h3.tar"),
    "archive-below": ("{home}/{night}/{all}.tar/{file}", "h1/a/all.tar/rank.txt", "", "+h1", "+a"),
    "twice": ("{a}-{b}-{a}-*", "x-y-x-z", "", "+a", "+b"),
    "twice-below": ("{a}/{a}/{a}", "a/a/a", "", "+a+b"),
    "kind": ("score=*/{night}/*_{device}.txt", "h1/a/score_re_x.txt", "", "+a+b", "+re_x"),
    "odd": ("\udcff/{name}", "\udcff/'\"", "", "+'\""),
    "none": ("{home}/{night}/x", "h1", "", "+", "++.+..+h1/a"),
    "no-template": ("{home", "h1"),
}


FILTERS = {
    "simple": ("rssi<50", "-rssi,band"),
    "mac": ("deviceMAC=0a:1b:2c:3d:4e:5f", ""),
    "expression": ("rssi > 40 AND band IN (0, 1)", "band, rssi DESC NULLS LAST"),
    "compare": ("deviceMAC <> neighbourMAC OR rssi IS NULL", "rssi + 1 COLLATE mac"),
    "like": ("deviceMAC LIKE '%E5F' COLLATE NOCASE", "_line DESC"),
    "elements": ("delayTime > 5 AND sample BETWEEN 1 AND 3", "delayTime DESC"),
    "entries": ("apRank = 1 OR entry = 0", "-apRank, entry"),
    "file": ("kind = 'scanning' AND source GLOB '*'", "source"),
    "aggregate": ("count(*) > 1", "max(rssi)"),
    "window": ("row_number() OVER () = 1", "rank() OVER (ORDER BY rssi)"),
    "select": ("rssi = (SELECT 1)", "(SELECT 1)"),
    "other-table": ("rssi IN sqlite_master", "1 UNION SELECT 2"),
    "out-of-parentheses": ("1) OR (1", "1 LIMIT 1"),
    "comment": ("1 -- ", "1 /* "),
    "statements": ("1; DELETE FROM scanning", "1; SELECT 1"),
    "parameter": ("rssi = ?1", ":a"),
    "quoted": ("rssi = \"rsi\"", "[rssi"),
    "number": ("rssi=99999999999999999999", "2, 1"),
    "text": ("printf('%s', rssi) || x'00' > replace(hex(zeroblob(9)), '0', 'a')", "upper(neighbourMAC)"),
    "deep": ("(" * 200 + "1" + ")" * 200, "-" * 200 + "1"),
}


def query_seeds():
    for name, query in QUERIES.items():
        yield "algdataSql", name, query.encode(errors="surrogateescape")
    for name, lines in TEMPLATES.items():
        yield "algdataTemplate", name, "\n".join(lines).encode(errors="surrogateescape")
    for name, lines in FILTERS.items():
        yield "algdataWhere", name, "\n".join(lines).encode()


# ---- Pages ---------------------------------------------------------------------

REDACTED = 1
HOSTILE = "</script><script>window.pwned=1</script><!--<script>\"'&\u2028\u202e"


def report_seeds():
    """Homes: a line "== NAME" begins each file; the last byte chooses whether names are replaced."""
    files = {target: "".join(records) for target, records in RECORDS.items()}
    home = "".join(f"== {target}_re_0a4e00000002.txt\n{text}" for target, text in files.items())
    snapshots = "".join(f"== {day}/{target}.txt\n{text}" for day in "ab" for target, text in files.items())
    names = f"== algdata.toml\n[names]\n\"{A.lower()}\" = '{HOSTILE.replace(chr(39), '')}'\n"
    spoiled = "".join(f"== {HOSTILE.replace('/', '_')}{target}\n" + text.replace(" ", f" {HOSTILE} ", 2)
                      for target, text in files.items())
    for name, text in (("home", home), ("snapshots", snapshots), ("hostile", spoiled), ("empty", ""),
                       ("names", names + home), *((target, text) for target, text in files.items())):
        for form, choice in (("", 0), ("-redacted", REDACTED)):
            yield "algdataReport", name + form, text.encode() + bytes([choice])


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--check", action="store_true", help="write nothing")
    check = parser.parse_args().check
    seeds = {f"{target}/{name}": content for make in (record_seeds, text_seeds, trip_seeds, algdata_seeds,
                                                           archive_seeds, query_seeds, report_seeds)
             for target, name, content in make()}
    if not check:
        shutil.rmtree(SEEDS, ignore_errors=True)
        for name, content in seeds.items():
            (SEEDS / name).parent.mkdir(parents=True, exist_ok=True)
            (SEEDS / name).write_bytes(content)
        print(f"{len(seeds)} seeds")
        return 0
    stored = {str(path.relative_to(SEEDS)): path.read_bytes() for path in SEEDS.rglob("*") if path.is_file()}
    wrong = sorted(name for name in seeds.keys() | stored.keys() if seeds.get(name) != stored.get(name))
    print("\n".join(f"differs from what fuzz/makeSeeds.py writes: {name}" for name in wrong)
          or f"{len(seeds)} seeds")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
