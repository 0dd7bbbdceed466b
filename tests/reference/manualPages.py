#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Checks that the manual pages say what the headers say.

    manualPages.py ROOT PAGES

Each function has a page with all sections. The page has exactly the messages of the
header, the same parameters as the declaration, and a version. Each setting, table,
record and kind of file has a page too. References lead to pages that exist.
"""
import re
import sys
from pathlib import Path

SECTIONS = ["NAME", "SYNOPSIS", "DESCRIPTION", "ARGUMENTS", "RETURN VALUE", "MESSAGES", "FILES", "EXAMPLES",
            "SEE ALSO", "HISTORY"]
OF_KINDS = ["NAME", "DESCRIPTION", "FIELDS", "EXAMPLES", "DAMAGE", "SEE ALSO"]
MESSAGE = r'^ \*   [EIN] ("(?:\\.|[^"\\\n])*")'

root, pages = map(Path, sys.argv[1:])
faults = []


def plain(text):
    """The text of a page without fonts and escapes."""
    return re.sub(r"\\f[BIR]", "", text).replace("\\-", "-").replace("\\&", "").replace("\\e", "\\")


def sections(page):
    if not page.exists():
        faults.append(f"{page.name} does not exist")
        return {}
    parts = re.split(r"^\.SH (.*)$", plain(page.read_text()), flags=re.M)
    return dict(zip(parts[1::2], parts[2::2]))


def functions():
    """(name, parameters, messages) of each function in the header."""
    header = (root / "alg/dataInterface.h").read_text()
    documented = r"/\*((?:(?!\*/).)*)\*/\n(?:bool|int|void|uint16_t) (\w+)\((.*?)\);"
    for text, name, arguments in re.findall(documented, header, re.S):
        names = [re.search(r"\(\*(\w+)\)|(\w+)$", one.strip()) for one in arguments.split(",")]
        messages = re.findall(MESSAGE, text, re.M)
        yield name, [found[1] or found[2] for found in names], messages


def check_history(name, page, expected):
    found = page.get("HISTORY", "").strip()
    if found != expected:
        faults.append(f"{name}.3: HISTORY is '{found}', expected '{expected}'")


known = list(functions())
for name, parameters, messages in known:
    page = sections(pages / f"man3/{name}.3")
    faults += [f"{name}.3: no section {title}" for title in SECTIONS if not page.get(title, "").strip()]
    check_history(name, page, f"{name}() appeared in version 1.0.")
    described = re.findall(r"^\.TP\n(\w+)$", page.get("ARGUMENTS", ""), re.M)
    if described != parameters:
        faults.append(f"{name}.3: describes the arguments {described}, expected {parameters}")
    listed = re.findall(r'^\.TP\n(".*")$', page.get("MESSAGES", ""), re.M)
    if listed != messages and not (not messages and re.search("the same messages", page["DESCRIPTION"])):
        faults.append(f"{name}.3: lists the messages {listed}, expected {messages}")

records = re.findall(r"^\} (\w+);$", (root / "alg/algDataInterfaceStruct.h").read_text(), re.M)
for name in ["algDataInterface", "libzo_log", "g_yra_debug", *records]:
    sections(pages / f"man3/{name}.3")
for name in ["peekThr", "peekThrStructure", "ai_yra_patc_compensation", "ai_yra_rssi_compensation"]:
    check_history(name, sections(pages / f"man3/{name}.3"), f"{name} appeared in version 1.0.")
kinds = re.findall(r"<!-- begin: (?!overview)(\S+) -->", (root / "docs/file-formats.md").read_text())
for kind in kinds:
    page = sections(pages / f"man5/algdata-{kind}.5")
    faults += [f"algdata-{kind}.5: no section {title}" for title in OF_KINDS
               if not page.get(title, "").strip()]
sections(pages / "man5/algdata.5")

for path in sorted(pages.glob("man?/*")):
    for name, number in re.findall(r"\\fB([\w\\-]+)\\fR\(([35])\)", path.read_text()):
        name = name.replace("\\-", "-")
        if not (pages / f"man{number}/{name}.{number}").exists():
            faults.append(f"{path.name}: refers to {name}({number}), which does not exist")

if len(known) != 51:
    faults.append(f"{len(known)} functions, expected 51")
print(f"{len(known)} functions, {len(records)} records, {len(kinds)} kinds of files")
sys.exit("\n".join(faults) if faults else 0)
