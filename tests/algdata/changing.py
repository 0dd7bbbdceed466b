#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Reads files with every command of algdata while they are appended to, cut and replaced.

    changing.py ALGDATA [SECONDS]     by default 5 seconds

Whatever happens to a file, it always holds the first lines of one known text. So an
answer is right if it is an answer about the first lines of that text, or status 2 with
the message that the file keeps changing. Prints the number of answers per command, and
fails at the first wrong answer.
"""
import collections
import csv
import io
import os
import pathlib
import subprocess
import sys
import tempfile
import threading
import time

# Each line is different, and all have the same length. The text fits one page of memory, and the
# lines of its export divide one: a write that crosses a page can be seen in part.
LINES = 110
TEXT = [f"a4c3f0000010 a4c3f0{1000 + i:06x}  1  44  {20 + i % 70}\n" for i in range(LINES)]
KEPT = (3, 80, 17, 109, 1, 60)  # lines after each cut


def change(path, aside, text, ended):
    """Puts another file in the place of `path`, appends whole lines and cuts it after whole lines."""
    width = len(text[0])
    while not ended.is_set():
        for have in KEPT:
            aside.write_text("".join(text[:have]))
            os.replace(aside, path)
            for line in text[have:have + 40]:
                with open(path, "a", encoding="ascii") as file:
                    file.write(line)
            os.truncate(path, width * have)


class WrongAnswer(Exception):
    pass


class Reader:
    """Asks algdata and compares its answers with those about the complete text."""

    def __init__(self, program, work):
        self.program, self.work = program, work
        self.answers, self.unsettled = collections.Counter(), 0

    def run(self, *arguments):
        return subprocess.run([self.program, *arguments], cwd=self.work, capture_output=True, text=True)

    def whole(self, *arguments):
        """The answer about the complete text, under the name of the file that changes."""
        return self.run(*arguments).stdout.replace("all.txt", "data/scan.txt")

    def ask(self, name, is_right, *arguments):
        done = self.run(*arguments)
        if done.returncode == 2 and "it keeps changing while it is read" in done.stderr:
            self.unsettled += 1
            return
        self.answers[name] += 1
        if not is_right(done):
            raise WrongAnswer(f"wrong answer of {name}, status {done.returncode}\n"
                              f"{done.stderr[:1000]}... {done.stdout[-300:]!r}")


def beginning_of(text, skipped=0):
    """Whether an answer is the beginning of a text, without the first lines of the answer."""
    return lambda done: (done.returncode == 0
                         and text.startswith("".join(done.stdout.splitlines(True)[skipped:])))


def is_without_faults(done):
    return done.returncode == 0 and done.stdout == "no faults in 1 file\n"


def counts_neighbours(done):
    """Every line has another neighbour, so there are as many neighbours as records."""
    rows = [row for row in csv.DictReader(io.StringIO(done.stdout)) if row["field"] == "neighbourMAC"]
    return done.returncode == 0 and len(rows) == 1 and rows[0]["distinct"] == rows[0]["records"] != "0"


def removes_only(done):
    """Compared with the complete text, its first lines have only removed records."""
    last = done.stdout.splitlines()[-1:]
    if last == ["no differences"]:
        return done.returncode == 0
    return bool(last) and done.returncode == 1 and last[0].startswith("0 added, ") and "0 changed" in last[0]


def questions(reader):
    """Name, check of the answer, arguments."""
    table = ("export", "data/scan.txt", "-f", "csv", "--columns", "neighbourMAC,rssi", "--kind", "scanning")
    as_loaded = ("-f", "ndjson", "--view", "loaded")
    shown = "".join(reader.whole("show", "all.txt").splitlines(True)[1:])
    loaded = "".join(reader.whole("show", "all.txt", "--view", "loaded").splitlines(True)[1:])
    imported = reader.work / "imported.txt"

    def is_imported(done):
        return done.returncode == 0 and "".join(TEXT).startswith(imported.read_text())

    return (
        ("export", beginning_of(reader.whole("export", "all.txt", *table[2:])), *table),
        ("export, loaded", beginning_of(reader.whole("export", "all.txt", *as_loaded)),
         "export", "data", *as_loaded),
        ("show", beginning_of(shown, skipped=1), "show", "data/scan.txt"),
        ("show, loaded", beginning_of(loaded, skipped=1), "show", "data", "--view", "loaded"),
        ("check", is_without_faults, "check", "data"),
        ("stats", counts_neighbours, "stats", "data/scan.txt", "-f", "csv"),
        ("diff", removes_only, "diff", "all.txt", "data/scan.txt"),
        ("import", is_imported, "import", "--kind", "scanning", "records.ndjson", "-o", str(imported)))


def soak(program, work, seconds):
    (work / "data").mkdir()
    (work / "all.txt").write_text("".join(TEXT))
    reader = Reader(program, work)
    records = reader.run("export", "all.txt", "-f", "ndjson").stdout.splitlines(True)
    asked = questions(reader)
    ended = threading.Event()
    writers = [threading.Thread(target=change, args=(work / path, work / aside, text, ended))
               for path, aside, text in (("data/scan.txt", "aside.txt", TEXT),
                                         ("records.ndjson", "aside.ndjson", records))]
    (work / "data/scan.txt").write_text(TEXT[0])
    (work / "records.ndjson").write_text(records[0])
    for writer in writers:
        writer.start()
    try:
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            for name, is_right, *arguments in asked:
                reader.ask(name, is_right, *arguments)
    finally:
        ended.set()
        for writer in writers:
            writer.join()
    return reader


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit("usage: changing.py ALGDATA [SECONDS]")
    program = pathlib.Path(sys.argv[1]).resolve()
    with tempfile.TemporaryDirectory() as directory:
        try:
            reader = soak(program, pathlib.Path(directory), float(sys.argv[2]) if len(sys.argv) > 2 else 5)
        except WrongAnswer as wrong:
            sys.exit(str(wrong))
    for name, count in sorted(reader.answers.items()):
        print(f"{name:<14} {count:6} answers")
    print(f"a file kept changing: {reader.unsettled} times")


if __name__ == "__main__":
    main()
