#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Runs the example queries of every table over the files that mesh_round writes.

    schemaExamples.py ALGDATA MESH_ROUND
"""
import re
import subprocess
import sys
import tempfile

OF_FILES = ("file", "finding", "error", "tree", "audit", "name")
MAY_BE_EMPTY = ("error", "finding", "audit", "name")


def output(*command):
    return subprocess.run(command, check=True, text=True, stdout=subprocess.PIPE).stdout


def main():
    algdata, host = sys.argv[1:3]
    tables = re.findall(r"^(\w+)  ", output(algdata, "sql", "--schema"), re.M)
    tables += [table + "_loaded" for table in tables if table not in OF_FILES]
    ran = 0
    with tempfile.TemporaryDirectory() as mesh:
        output(host, mesh)
        for table in tables:
            queries = re.findall(r"^    (SELECT .*)$", output(algdata, "sql", "--schema", table), re.M)
            assert len(queries) == 3, f"{table} has {len(queries)} examples"
            for query in queries:
                rows = output(algdata, "sql", mesh, query, "-f", "ndjson").splitlines()
                assert rows or table in MAY_BE_EMPTY, f"no rows: {query}"
                ran += 1
    print(f"{ran} example queries of {len(tables)} tables")


if __name__ == "__main__":
    main()
