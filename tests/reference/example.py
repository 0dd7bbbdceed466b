#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Runs an example in an empty directory. It must succeed and print what its comments say.

    example.py PROGRAM SOURCE
"""
import re
import subprocess
import sys
import tempfile
from pathlib import Path

program, source = sys.argv[1:]
expected = re.findall(r"/\*(?: \w[^*]*)? ?prints: (.*?) \*/", Path(source).read_text())
with tempfile.TemporaryDirectory() as work:
    done = subprocess.run([program], cwd=work, stdout=subprocess.PIPE, text=True)
printed = done.stdout.splitlines()
if done.returncode != 0:
    sys.exit(f"{program}: exit status {done.returncode}")
for number in range(max(len(expected), len(printed))):
    wanted, got = (lines[number] if number < len(lines) else None for lines in (expected, printed))
    if wanted != got:
        sys.exit(f"{source}: output {number + 1}: the comment says {wanted!r}, printed was {got!r}")
if not expected:
    sys.exit(f"{source}: says of no output what it is")
