#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Checks that every place that states the version states that of alg/dataInterface.h."""
import argparse
import pathlib
import re
import subprocess
import sys

HEADER = "alg/dataInterface.h"

# The place, and what precedes the version there. The first match counts.
IN_SOURCES = {"CHANGELOG.md": r"^## \[", "debian/changelog": r"^alg-data-interface \("}
IN_BUILD = {"alg-data-interface.pc": r"^Version: ",
            "algDataInterfaceConfigVersion.cmake": r'^set\(PACKAGE_VERSION "'}
# The newest node is that of the last minor version that added a symbol, so it may be older.
SYMBOLS = "abi/symbols.map"


def stated_in(text, before):
    found = re.search(rf"{before}(\d+(?:\.\d+)+)", text, re.M)
    return found[1] if found else "none"


def version_of_header(text):
    return ".".join(re.search(rf"^#define ALG_DATA_INTERFACE_VERSION_{part} (\d+)$", text, re.M)[1]
                    for part in ("MAJOR", "MINOR", "PATCH"))


def numbers(version):
    return [int(number) for number in version.split(".")]


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("sources", type=pathlib.Path)
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("--algdata", help="the command, if it is built")
    parser.add_argument("--as-if", metavar="VERSION", help="compare with this version, not the header's")
    options = parser.parse_args()

    expected = options.as_if or version_of_header((options.sources / HEADER).read_text())
    stated = {place: stated_in((directory / place).read_text(), before)
              for directory, places in ((options.sources, IN_SOURCES), (options.build, IN_BUILD))
              for place, before in places.items()}
    if options.algdata:
        command = [options.algdata, "--version"]
        output = subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True)
        stated["algdata"] = stated_in(output.stdout, r"\Aalgdata ")
    findings = [f"{place}: version {version}" for place, version in stated.items() if version != expected]

    nodes = re.findall(r"^ALG_DATA_INTERFACE_([\d.]+) \{", (options.sources / SYMBOLS).read_text(), re.M)
    newest = max(nodes, key=numbers)
    if numbers(newest) > numbers(expected)[:2]:
        findings.append(f"{SYMBOLS}: version {newest}")

    for finding in sorted(findings):
        print(f"{finding}, {HEADER} states {expected}")
    print(f"{len(stated) + 1} places, {len(findings)} differ from {expected}")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
