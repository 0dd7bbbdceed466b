#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Runs the examples of a page and compares what they print with what the page shows.

    examples.py ALGDATA MESH_ROUND PAGE             compares
    examples.py ALGDATA MESH_ROUND PAGE --update    writes what they print into the page

An example is a line after "$ " in a block of kind "console". All examples of a page run in
one shell, one after the other, in a directory with the files that mesh_round writes.
"""
import difflib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

CONFIGURATION = pathlib.Path(__file__).resolve().parents[2] / "examples/mesh_round/algdata.toml"
BLOCK = re.compile(r"(?<=^```console\n).*?(?=^```$)", re.M | re.S)
MARK = "\N{START OF HEADING}"


def commands(block):
    return [line[2:] for line in block.splitlines() if line.startswith("$ ")]


def add_sqlite(work, program):
    """Puts a `sqlite3` into the directory that finds the extension. A sanitizer must be loaded first."""
    extension = program.with_name("algdata_sqlite.so")
    shell = shutil.which("sqlite3")
    if not extension.exists() or shell is None:
        return
    libraries = subprocess.run(["ldd", extension], check=True, text=True, stdout=subprocess.PIPE).stdout
    preload = " ".join(re.findall(r"=> (\S*/lib[a-z]*san\S*)", libraries))
    script = pathlib.Path(work, "sqlite3")
    script.write_text(f"#!/bin/sh\nexport LD_LIBRARY_PATH='{extension.parent}' LD_PRELOAD='{preload}'\n"
                      f"exec {shell} \"$@\"\n")
    script.chmod(0o755)


def run(program, host, lines):
    """What each command prints, messages included. Each one finds the status of the one before in $?."""
    with tempfile.TemporaryDirectory() as work:
        mesh = pathlib.Path(work, "demo-mesh")
        mesh.mkdir()
        subprocess.run([host, mesh], check=True, stdout=subprocess.DEVNULL)
        shutil.copy(CONFIGURATION, mesh)
        pathlib.Path(work, "algdata").symlink_to(program)
        add_sqlite(work, program)
        steps = "".join(f"printf '{MARK}'; (exit $status)\n{line}\nstatus=$?\n" for line in lines)
        environment = {**os.environ, "LC_ALL": "C", "PATH": f"{work}:{os.environ['PATH']}"}
        done = subprocess.run(["bash", "-c", f"status=0\n{steps}"], cwd=mesh, env=environment, text=True,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return done.stdout.split(MARK)[1:]


def main():
    program, host, page = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
    text = page.read_text()
    lines = [line for block in BLOCK.findall(text) for line in commands(block)]
    printed = iter(run(program, host, lines))
    fresh = BLOCK.sub(lambda block: "".join(f"$ {line}\n{next(printed)}" for line in commands(block[0])),
                      text)
    if sys.argv[4:] == ["--update"]:
        page.write_text(fresh)
        return 0
    sys.stdout.writelines(difflib.unified_diff(text.splitlines(True), fresh.splitlines(True),
                                               f"{page.name}: shown", f"{page.name}: printed"))
    print(f"{len(lines)} examples of {page.name}")
    return int(fresh != text or not lines)


if __name__ == "__main__":
    sys.exit(main())
