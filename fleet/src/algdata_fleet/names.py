# SPDX-License-Identifier: Apache-2.0
"""Which files algdata reads, and how it prints their names."""

ARCHIVES = (".tar", ".tar.gz", ".tgz", ".tar.zst", ".tzst", ".zip")


def names_archive(name: str) -> bool:
    return name.lower().endswith(ARCHIVES)


def is_hidden(name: str) -> bool:
    return any(part.startswith(".") for part in name.split("/"))


def is_possible(name: str) -> bool:
    """Whether a file in a directory can have this name."""
    return not any(part in ("", ".", "..") for part in name.split("/"))


def printed(name: str) -> str:
    """A name as algdata prints it: a byte that is not UTF-8 becomes \\xNN."""
    return name.encode("utf-8", "surrogateescape").decode("utf-8", "backslashreplace")
