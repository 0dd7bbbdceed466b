# SPDX-License-Identifier: Apache-2.0
"""Which files algdata reads, and how it prints their names."""

import ctypes

CONFIGURATION = "algdata.toml"  # algdata does not read it as a record file

ARCHIVES = (".tar", ".tar.gz", ".tgz", ".tar.zst", ".tzst", ".zip")


def names_archive(name: str) -> bool:
    return name.lower().endswith(ARCHIVES)


def is_hidden(name: str) -> bool:
    return any(part.startswith(".") for part in name.split("/"))


def is_possible(name: str) -> bool:
    """Whether a file in a directory can have this name."""
    return not any(part in ("", ".", "..") for part in name.split("/"))


def printed(name: str) -> str:
    """A name as algdata prints it. In a name that is not UTF-8, each byte of a character that is not
    visible becomes \\xNN."""
    try:
        name.encode()
    except UnicodeEncodeError:
        return "".join(_escaped(letter) for letter in name)
    return name


def _escaped(letter: str) -> str:
    if not "\udc80" <= letter <= "\udcff" and ctypes.CDLL(None).wcwidth(ctypes.c_wchar(letter)) > 0:
        return letter
    return "".join(f"\\x{byte:02x}" for byte in letter.encode("utf-8", "surrogateescape"))
