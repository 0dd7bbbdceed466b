# SPDX-License-Identifier: Apache-2.0
"""Lists the files of a shard without algdata, to compare what the two have seen.

    python -m algdata_fleet.listing MAX_FILES PATH...

prints one JSON array per file: its name and its type. It is a process of its own, because an
archive from somewhere else can ask for any amount of memory and time.
"""

import gzip
import json
import os
import stat
import sys
import tarfile
import unicodedata
import zipfile
from collections.abc import Iterator
from typing import IO

from algdata_fleet import FleetError
from algdata_fleet.names import CONFIGURATION, is_hidden, is_possible, names_archive, printed

FILE, LINK, FOLLOWED, HARD_LINK, WRONG_NAME, NESTED, ENCRYPTED, DAMAGED = (
    "file",
    "link",
    "link to a file",
    "hard link",
    "wrong name",
    "nested",
    "encrypted",
    "damaged",
)
Listed = tuple[str, str]


def list_path(path: str) -> Iterator[Listed]:
    if os.path.islink(path):
        yield path, FOLLOWED if os.path.isfile(path) else LINK
    elif os.path.isdir(path):
        yield from _list_directory(path)
    elif names_archive(path):
        yield from _list_archive(path)
    else:
        yield path, FILE


def _list_directory(path: str) -> Iterator[Listed]:
    for entry in sorted(os.scandir(path), key=lambda found: found.name):
        if entry.name.startswith(".") or entry.name == CONFIGURATION:
            continue
        inside = f"{path}/{entry.name}"
        if entry.is_file(follow_symlinks=False) and names_archive(entry.name):
            yield from _list_inner_archive(inside)
        elif (
            entry.is_symlink() or entry.is_dir(follow_symlinks=False) or entry.is_file(follow_symlinks=False)
        ):
            yield from list_path(inside)


def _list_inner_archive(path: str) -> Iterator[Listed]:
    """All files of an archive in a directory, or the archive as a damaged file: the others still count."""
    try:
        members = list(_list_archive(path))
    except Exception:  # a damaged archive can fail in any way
        members = [(path, DAMAGED)]
    yield from members


def _list_archive(path: str) -> Iterator[Listed]:
    members = _zip_members(path) if path.lower().endswith(".zip") else _tar_members(path)
    for name, kind in members:
        while name.startswith("./"):
            name = name[2:]
        if not is_possible(name):
            yield f"{path}/{name}", WRONG_NAME
        elif not is_hidden(name):
            nested = kind == FILE and names_archive(name)
            yield f"{path}/{name}", NESTED if nested else kind


def _zip_members(path: str) -> Iterator[Listed]:
    with zipfile.ZipFile(path) as archive:
        for member in archive.infolist():
            mode = member.external_attr >> 16
            if member.is_dir() or stat.S_ISDIR(mode):
                continue
            utf8 = member.flag_bits & 0x800
            name = (
                _composed(member.filename)
                if utf8
                else member.filename.encode("cp437").decode("utf-8", "surrogateescape")
            )
            kind = ENCRYPTED if member.flag_bits & 1 else LINK if stat.S_ISLNK(mode) else FILE
            yield name, kind


def _tar_members(path: str) -> Iterator[Listed]:
    # An archive can follow another one, after the zeros at the end of the first.
    with _decompressed(path) as stream, tarfile.open(fileobj=stream, mode="r|", ignore_zeros=True) as archive:
        for member in archive:
            kind = (
                HARD_LINK if member.islnk() else LINK if member.issym() else FILE if member.isfile() else None
            )
            if kind is not None:
                headers = member.pax_headers
                text = "path" in headers and headers.get("hdrcharset") != "BINARY"
                yield (_composed(member.name) if text else member.name), kind
            archive.members = []  # type: ignore[attr-defined] # it would keep every member


def _composed(name: str) -> str:
    """A letter and its accent are one character, as libarchive has it."""
    return unicodedata.normalize("NFC", name)


def _decompressed(path: str) -> IO[bytes]:
    with open(path, "rb") as start:
        magic = start.read(4)
    if magic[:2] == b"\x1f\x8b":
        return gzip.open(path, "rb")  # type: ignore[return-value]
    if magic == b"\x28\xb5\x2f\xfd":
        import pyarrow  # the standard library has no zstd

        stream: IO[bytes] = pyarrow.input_stream(path, compression="zstd")
        return stream
    return open(path, "rb")


def main(arguments: list[str]) -> int:
    most = int(arguments[0])
    count = 0
    try:
        for path in arguments[1:]:
            for name, kind in list_path(path):
                count += 1
                if count > most:
                    raise FleetError(f"it has more than {most} files, the limit for a shard")
                print(json.dumps([printed(name.removeprefix("./")), kind]))
    except Exception as error:  # a damaged archive can fail in any way
        print(f"cannot list it: {error or type(error).__name__}", file=sys.stderr)
        return 2
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
