#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""The site is not built from a tree with a fault: each of these must be reported.

    siteFaults.py ROOT
"""
import concurrent.futures
import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

FUNCTION = "bool touchFile(const char* path);\n"
# What it is, the file, what is replaced, by what, and what the report must say.
FAULTS = (
    ("no fault", "README.md", "", "", ""),
    ("a function without comment", "alg/dataInterface.h", FUNCTION, FUNCTION + "\nvoid other(void);\n",
     "Member other(void) (function) of group files is not documented"),
    ("a function without result", "alg/dataInterface.h", " * Returns the count, or -1", " * It is -1",
     "return type of member dataLineCounter is not documented"),
    ("a parameter without description", "alg/dataInterface.h", " *   mcsOrder    an MCS index\n", "",
     "parameter 'mcsOrder'"),
    ("a member without comment", "alg/algDataInterfaceStruct.h", " /* its rank */", "",
     "Member apRank (variable) of struct ScoreInfo is not documented"),
    ("a function without example", "docs/reference/examples/fileHelpers.c", "/* [touchFile] */", "",
     "included file no-example is not found"),
    ("a link to a missing heading", "docs/testing.md", "](#targets)", "](#nowhere)", "docs-testing-nowhere"),
)


def copied(root, tree):
    shutil.copytree(root / "alg", tree / "alg")
    shutil.copytree(root / "docs", tree / "docs", ignore=shutil.ignore_patterns("__pycache__"))
    for path in root.glob("*.md"):
        shutil.copy(path, tree)


def report(root, fault):
    _, name, old, new, _ = fault
    with tempfile.TemporaryDirectory() as work:
        tree = Path(work)
        copied(root, tree)
        text = (tree / name).read_text()
        if old not in text:
            sys.exit(f"{name} does not contain {old!r}")
        (tree / name).write_text(text.replace(old, new))
        command = [sys.executable, "-B", tree / "docs/reference/site.py", tree / "site"]
        done = subprocess.run(command, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return done.returncode, re.sub(r"\s+", " ", done.stdout)


failed = False
with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
    reports = list(pool.map(lambda fault: report(Path(sys.argv[1]), fault), FAULTS))
for (what, _, _, _, expected), (status, output) in zip(FAULTS, reports):
    if (status != 0) != bool(expected) or expected not in output:
        print(f"{what}: status {status}, expected {expected or 'none'!r}, reported was: {output}")
        failed = True
print(f"{len(FAULTS) - 1} faults")
sys.exit(failed)
