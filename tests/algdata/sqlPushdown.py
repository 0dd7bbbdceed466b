#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Compares the rows of random queries over files with those of the same queries over a copy.

    sqlPushdown.py ALGDATA [QUERIES [SEED]]     by default 600 queries

algdata opens only the files that the constraints of a query can mean. The copy is an
ordinary table with the same rows, where every row is looked at. So a query that has
other rows there has lost some, or has too many. The directory has names on which a
comparison depends: numbers with zeros before them, letters of both cases, quotes,
a newline, bytes that are not UTF-8.
"""
import json
import os
import pathlib
import random
import sqlite3
import subprocess
import sys
import tempfile

HOMES = (b"h1", b"H1", b"1", b"01", b"1.0", b"2", b"it's", b"new\nline", b"\xff\xfe", b"-x", b"x" * 255)
NIGHTS = (b"1", b"a")
FILES = {b"rank-1.txt": "0A1B2C3D4E5F 102030405060 1\n102030405060 000000000000 0\n",
         b"rank-a.txt": "0A1B2C3D4E5F 102030405060 2\n", b"1.txt": "0A1B2C3D4E5F 102030405060 1\n"}
COLUMNS = {"home": "TEXT", "night": "TEXT", "what": "TEXT", "_path": "TEXT", "_record": "INTEGER",
           "apRank": "INTEGER"}
TEMPLATES = ("{home}/{night}/rank-{what}.txt", "{home}/{night}/*")
KEY = "hex({0}._path) || ':' || {0}._record"  # of a row
BATCH = 25  # queries that one run of algdata answers


def make_files(directory):
    for home in HOMES:
        for night in NIGHTS:
            place = os.path.join(os.fsencode(directory), home, night)
            os.makedirs(place)
            for name, text in FILES.items():
                pathlib.Path(os.fsdecode(os.path.join(place, name))).write_text(text, encoding="ascii")


# ---- Queries ------------------------------------------------------------------

class Generator:
    def __init__(self, chance):
        self.chance = chance

    def pick(self, *choices):
        return self.chance.choice(choices)

    def text(self):
        """A name that exists, or nearly."""
        known = self.pick(*HOMES[:-1], *NIGHTS, b"", b"..", b".", b"/", b"h1/1", b"a\0", b"9",
                          b"./h1/1/rank-1.txt", b"./01/a/1.txt", b"./h1//1/rank-1.txt", b"h1/1/rank-1.txt")
        if known.isascii() and known.decode().isprintable():
            return "'" + known.decode().replace("'", "''") + "'"
        return f"CAST(X'{known.hex()}' AS TEXT)"

    def value(self, of):
        """A constant or a column; `of` is the alias of the table."""
        return self.pick(self.text, self.text, self.text,
                         lambda: self.pick("1", "2", "0", "1.0", "1e0", "-1", "NULL", "X'6831'", "0 + 1",
                                           "CAST('1' AS NUMERIC)", "char(104, 49)", "lower('H1')"),
                         lambda: f"{of}.{self.pick(*COLUMNS)}",
                         lambda: f"(SELECT {self.pick(*COLUMNS)} FROM ap_rank WHERE home = '01' LIMIT 1)")()

    def values(self, of):
        return ", ".join(self.value(of) for _ in range(self.chance.randrange(4)))

    def atom(self, one, other):
        """A condition on the table `one`; `other` is a table whose columns it may use."""
        column = f"{one}.{self.pick('home', 'home', 'night', 'what', '_path', '_record', 'apRank')}"
        collated = self.pick(*[""] * 6, " COLLATE NOCASE", " COLLATE BINARY")
        value = self.value(other)
        return self.pick(*[f"{column} = {value}{collated}"] * 4, f"{value} = {column}{collated}",
                         *[f"{column}{collated} IN ({self.values(other)})"] * 3,
                         f"{column} IN (SELECT {self.pick(*COLUMNS)} FROM ap_rank"
                         f" WHERE night = {self.text()})",
                         f"{column} IN (VALUES ({self.text()}), (1), (NULL))",
                         f"{column} IS {value}", f"{column} <> {value}", f"{column} > {value}",
                         f"{column} BETWEEN {value} AND {self.text()}", f"{column} LIKE {self.text()} || '%'",
                         f"{column} GLOB '*1*'", f"{column} IS NULL", f"+{column} = {value}",
                         f"({column}, {one}.night) = ({value}, {self.text()})")

    def condition(self, one, other, depth):
        if depth == 0:
            return self.atom(one, other)
        sides = [self.condition(one, other, self.chance.randrange(depth)) for _ in range(2)]
        return self.pick(f"({sides[0]} AND {sides[1]})", f"({sides[0]} OR {sides[1]})",
                         f"({sides[0]} OR {sides[1]})", f"NOT ({sides[0]})")

    def query(self):
        depth = self.chance.randrange(4)
        if self.chance.random() < 0.6:
            return f"SELECT {KEY.format('a')} AS key FROM ap_rank a WHERE {self.condition('a', 'a', depth)}"
        join = self.pick("JOIN", "LEFT JOIN")
        return (f"SELECT {KEY.format('a')} || '+' || ifnull({KEY.format('b')}, '') AS key"
                f" FROM ap_rank a {join} ap_rank b"
                f" ON {self.condition('b', 'a', depth)} WHERE {self.condition('a', 'b', depth)}"
                " AND a.night = 'a'")


# ---- Running them -------------------------------------------------------------

def answer(program, directory, query):
    """The rows that algdata prints."""
    arguments = [part for template in TEMPLATES for part in ("--path", template)]
    done = subprocess.run([program, "sql", ".", *arguments, "-f", "json"], cwd=directory,
                          input=query.encode(), capture_output=True, check=False)
    if done.returncode != 0:
        sys.exit(f"status {done.returncode}: {done.stderr.decode()[:2000]}\n{query}")
    return [list(row.values()) for row in json.loads(done.stdout)]


def copy_of(program, directory):
    """A database with an ordinary table of the same rows."""
    copy = sqlite3.connect(":memory:")
    copy.execute(f"CREATE TABLE ap_rank({', '.join(f'{name} {form}' for name, form in COLUMNS.items())})")
    asked = ", ".join(f"hex({name}) AS c{i}, typeof({name}) AS t{i}" for i, name in enumerate(COLUMNS))
    for row in answer(program, directory, f"SELECT {asked} FROM ap_rank"):
        values = ", ".join("NULL" if form == "null" else f"CAST(CAST(X'{digits}' AS TEXT) AS {form})"
                           for digits, form in zip(row[::2], row[1::2]))
        copy.execute(f"INSERT INTO ap_rank VALUES({values})")
    return copy


def batch_of(queries):
    parts = [f"SELECT {i} AS n,"
             f" (SELECT group_concat(key, ' ') FROM (SELECT key FROM ({query}) ORDER BY key)) AS k"
             for i, query in enumerate(queries)]
    return " UNION ALL ".join(parts)


def main():
    if len(sys.argv) not in (2, 3, 4):
        sys.exit("usage: sqlPushdown.py ALGDATA [QUERIES [SEED]]")
    program = str(pathlib.Path(sys.argv[1]).resolve())
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 600
    generator = Generator(random.Random(int(sys.argv[3]) if len(sys.argv) > 3 else 1))
    wrong = rows = 0
    with tempfile.TemporaryDirectory() as directory:
        make_files(directory)
        copy = copy_of(program, directory)
        for _ in range(0, count, BATCH):
            queries = [generator.query() for _ in range(BATCH)]
            batch = batch_of(queries)
            for query, (_, keys), (_, right) in zip(queries, answer(program, directory, batch),
                                                    copy.execute(batch)):
                rows += len((right or "").split())
                if keys != right:
                    wrong += 1
                    print(f"{len((keys or '').split())} rows, expected {len((right or '').split())}:")
                    print(f"    {query}")
    print(f"{count} queries with {rows} rows, {wrong} wrong")
    sys.exit(1 if wrong or rows == 0 else 0)


if __name__ == "__main__":
    main()
