#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Compiles every synopsis of section 3, as C99 and as C++11, without warnings.

    synopses.py ROOT PAGES CC CXX

A declaration stands after the header that it includes, so it must declare the same. The
members of a record must have the types that the page states.
"""
import re
import subprocess
import sys
import tempfile
from pathlib import Path

root, pages, cc, cxx = sys.argv[1:]
FLAGS = ["-Wall", "-Wextra", "-pedantic", "-Werror", f"-I{root}/alg", "-fsyntax-only"]


def synopsis(page):
    text = re.search(r"^\.SH SYNOPSIS\n(.*?)^\.SH", page.read_text(), re.M | re.S)[1]
    code = re.search(r"^\.nf\n(.*?)^\.fi", text, re.M | re.S)[1]
    return re.sub(r"\\f[BIR]", "", code).replace("\\-", "-").replace("\\&", "")


def renamed(code):
    """A record under another name, and a check that it has the layout of the header's."""
    record = re.search(r"typedef struct (\w+) \{(.*)\} \w+;", code, re.S)
    if not record:
        return code
    name, members = record.groups()
    checks = "".join(f"typedef char same_{name}_{member}[offsetof({name}, {member}) == "
                     f"offsetof(page_{name}, {member}) ? 1 : -1];\n"
                     for member in re.findall(r"(\w+)(?:\[[^;]*)?;", members))
    return (f"#include <dataInterface.h>\ntypedef struct page_{name} {{{members}}} page_{name};\n{checks}"
            f"typedef char same_{name}[sizeof({name}) == sizeof(page_{name}) ? 1 : -1];\n")


found = sorted(Path(pages).glob("man3/*.3"))
source = "#include <stddef.h>\n" + "".join(renamed(synopsis(page)) for page in found)
with tempfile.TemporaryDirectory() as work:
    for compiler, name, standard in ((cc, "synopses.c", "c99"), (cxx, "synopses.cpp", "c++11")):
        path = Path(work) / name
        path.write_text(source)
        if subprocess.run([compiler, f"-std={standard}", *FLAGS, path]).returncode != 0:
            sys.exit(f"{name} does not compile as {standard}")
declared = len(re.findall(r"^\w[^{};#]*\);$", source, re.M))
print(f"{len(found)} synopses, {declared} of them functions")
sys.exit(0 if declared >= 51 else "a function has no declaration in its synopsis")
