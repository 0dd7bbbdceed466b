# SPDX-License-Identifier: Apache-2.0
"""Runs Doxygen on the public headers and the pages, with docs/reference/Doxyfile."""
import os
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
HEADERS = ("dataInterface.h", "algDataInterfaceStruct.h", "algDefines.h", "capacities.h", "ai_macros.h")
VERSION = "1.9.4"  # Debian 12's; for the site, because others warn of other things


def pages():
    top = [ROOT / name for name in ("README.md", "CONTRIBUTING.md", "CHANGELOG.md", "SECURITY.md")]
    return [path for path in top if path.exists()] + sorted((ROOT / "docs").glob("*.md"))


def version():
    """The version of the interface, from its header."""
    parts = re.findall(r"^#define ALG_DATA_INTERFACE_VERSION_(?:MAJOR|MINOR|PATCH) (\d+)$",
                       (ROOT / "alg/dataInterface.h").read_text(), re.M)
    return ".".join(parts)


def quoted(*paths):
    """A list for Doxygen, whose paths may contain blanks."""
    return " ".join(f'"{path}"' for path in paths)


def run(output, html=False, xml=False, inputs=(), strict=True):
    """Writes HTML or XML below `output`. If strict, ends the program if Doxygen warns of anything."""
    files = [*(ROOT / "alg" / name for name in HEADERS), *pages(), *inputs]
    yes = {True: "YES", False: "NO"}
    environment = dict(
        os.environ, ALG_ROOT=str(ROOT), ALG_OUTPUT=str(output), ALG_VERSION=version(),
        ALG_INPUT=quoted(*files), ALG_STRIPPED=quoted(ROOT / "alg", ROOT), ALG_IMAGES=quoted(output),
        ALG_EXAMPLES=quoted(ROOT / "docs/reference/examples"),
        ALG_FILTER=f'{sys.executable} "{Path(__file__).with_name("doxygenInput.py")}"',
        ALG_WARNINGS="FAIL_ON_WARNINGS" if strict else "NO", ALG_HTML=yes[html], ALG_XML=yes[xml])
    done = subprocess.run(["doxygen", ROOT / "docs/reference/Doxyfile"], env=environment, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    if done.returncode != 0 or (strict and done.stdout):
        sys.exit(done.stdout + "doxygen has failed")


def require_version():
    """Ends the program unless the installed Doxygen is the one that the site is made with."""
    installed = subprocess.run(["doxygen", "--version"], check=True, text=True, stdout=subprocess.PIPE).stdout
    if installed.split()[0] != VERSION:
        sys.exit(f"doxygen is version {installed.split()[0]}, expected {VERSION}, that of Debian 12")
