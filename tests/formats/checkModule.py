#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Compares the sources of the module with the description in formats/, in both directions.

    checkModule.py FORMAT_TABLES SOURCES

FORMAT_TABLES is the program that lists the description, SOURCES the directory
of the module. The check covers the format strings, the members of the records that
are stored in files, and the functions that have a path.
"""
import re
import subprocess
import sys
from pathlib import Path

# Functions for files of any kind.
NO_KIND = {"dataLineCounter", "touchFile"}

# Records that no file contains, and a member that only AP-all files contain.
NO_FILE = {"AlgPatParameter", "AlgSinglePat", "AlgPatParameterV2"}
OTHER_FILE = {"ApNodeV2.tipc_node"}

LITERAL = r'"(?:\\.|[^"\\])*"'


def source_text(path):
    """The source without comments."""
    keep = re.compile(rf"{LITERAL}|/\*.*?\*/|//[^\n]*", re.S)
    return keep.sub(lambda m: m.group() if m.group()[0] == '"' else " ", path.read_text())


def formats_of(text):
    """The literals in FORMAT(...) and FORMATS(..., ...), macros expanded and literals joined."""
    macros = dict(re.findall(rf"#define (\w+) ({LITERAL})\n", text))
    for arguments in re.findall(rf"\bFORMATS?\(((?:\s*(?:{LITERAL}|\w+|,))+)\s*\)", text):
        for argument in re.findall(rf"(?:\s*(?:{LITERAL}|\w+))+", arguments):
            pieces = [macros.get(piece, piece) for piece in re.findall(rf"{LITERAL}|\w+", argument)]
            if all(piece.startswith('"') for piece in pieces):
                yield "".join(piece[1:-1] for piece in pieces)


def structures_of(text):
    """Members by structure, as (type, name)."""
    return {name: re.findall(r"^\s*(\w+) (\w+)(?:\[[^;]*)?;", body, re.M)
            for name, body in re.findall(r"typedef struct (\w+) \{(.*?)\n\}", text, re.S)}


def members_of(structures, record, described):
    """The names of a record's values, without the members of records that are described separately."""
    for kind, name in structures[record]:
        if kind not in structures:
            yield name
        elif kind not in described or kind == "ApNodeV2":
            yield from members_of(structures, kind, described)


def main(program, sources):
    output = subprocess.run([program, "list"], check=True, stdout=subprocess.PIPE, text=True).stdout
    listed = [line.split(" ", 1) for line in output.splitlines()]
    described_formats = {text for what, text in listed if what in ("in", "out")}
    described_members = {text.replace(" ", ".") for what, text in listed if what == "member"}
    described_functions = {text for what, text in listed if what == "function"}
    described_records = {text.split()[0] for what, text in listed if what == "member"}

    texts = [source_text(path) for path in sorted(sources.rglob("*.cpp")) + sorted(sources.rglob("*.h"))]
    formats = {found for text in texts for found in formats_of(text)}
    structures = structures_of(source_text(sources / "algDataInterfaceStruct.h"))
    records = set(structures) - NO_FILE
    members = {f"{record}.{member}" for record in described_records & records
               for member in members_of(structures, record, described_records)} - OTHER_FILE
    inner = {kind for record in described_records & records for kind, _ in structures[record]}
    header = source_text(sources / "dataInterface.h")
    functions = set(re.findall(r"\b(\w+)\(const char\* path\b", header)) - NO_KIND

    faults = []
    for what, module, table in (("format", formats, described_formats),
                                ("member", members, described_members),
                                ("function", functions, described_functions),
                                ("record", records - inner, described_records - inner)):
        faults += [f"{what} {item} of the module is not in formats/" for item in sorted(module - table)]
        faults += [f"{what} {item} of formats/ is not in the module" for item in sorted(table - module)]
    for fault in faults:
        print(fault)
    print(f"{len(formats)} formats, {len(members)} members, {len(functions)} functions, {len(faults)} faults")
    return 1 if faults or not formats or not members or not functions else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], Path(sys.argv[2])))
