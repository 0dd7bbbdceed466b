# SPDX-License-Identifier: Apache-2.0
"""Compares what two programs have seen in a shard: each file is loaded, or refused with a reason."""

import re
from collections import Counter
from collections.abc import Iterable
from dataclasses import dataclass

from algdata_fleet.listing import (
    DAMAGED,
    ENCRYPTED,
    FILE,
    FOLLOWED,
    HARD_LINK,
    LINK,
    NESTED,
    WRONG_NAME,
    Listed,
)
from algdata_fleet.names import names_archive, printed

LOADED, EMPTY, OTHER, REFUSED = "loaded", "empty", "other", "refused"
REASONS = {
    LINK: "a symbolic link is not followed",
    FOLLOWED: "it is a symbolic link to a file, which algdata follows",
    HARD_LINK: "it is a hard link; its content is under another name",
    WRONG_NAME: "expected a relative name without empty parts, `.` and `..`",
    NESTED: "an archive in an archive is not read",
    ENCRYPTED: "it is encrypted",
    DAMAGED: "it is damaged",
}
STATUS = {"ok": LOADED, "empty": EMPTY, "other": OTHER}


@dataclass
class File:
    """A file of a shard, and what became of it."""

    path: str
    status: str
    kind: str | None = None
    records: int = 0
    reason: str = ""


@dataclass
class Seen:
    """What algdata says about the files of a shard."""

    files: dict[str, tuple[str, str | None, int]]  # status, kind and records by path
    twice: list[str]
    errors: dict[str, str]  # message by path
    fatal: str = ""  # the archive itself could not be read to its end


def seen_by_algdata(rows: Iterable[dict[str, object]], shards: Iterable[str]) -> Seen:
    """Reads the rows of the tables `file` and `error`. Shards are the paths that were read."""
    seen = Seen({}, [], {})
    whole = [f"cannot read {printed(name)}" for name in shards]
    for row in rows:
        path = str(row["path"]).removeprefix("./")
        if row["message"] is None:
            if path in seen.files:
                seen.twice.append(path)
            records = int(row["records"] or 0)  # type: ignore[call-overload] # null if it cannot be read
            seen.files[path] = (str(row["status"]), row["kind"], records)  # type: ignore[assignment]
            continue
        message = str(row["message"]).replace("cannot read ./", "cannot read ", 1)
        start = next(
            (start for start in whole if message.startswith((f"{start}: ", f"{start} after "))), None
        )
        if start is not None:
            seen.fatal = seen.fatal or message
        elif path in seen.files:
            seen.errors[path] = message
        elif found := re.match(r"cannot read (.*): ", message, re.DOTALL):
            seen.errors[found[1]] = message.removeprefix(found[0])
            seen.errors[message] = message  # for names with a colon
        else:
            seen.errors[path] = message
    return seen


def reconcile(listed: Iterable[Listed], seen: Seen) -> tuple[list[File], str]:
    """All files, and the first contradiction between the two programs; empty if there is none."""
    files: list[File] = []
    names: Counter[str] = Counter()
    damaged = {path: why for path, why in seen.errors.items() if names_archive(path)}
    contradiction = f"{seen.twice[0]}: algdata has read it twice" if seen.twice else ""
    for path, kind in listed:
        names[path] += 1
        if kind == FOLLOWED:  # its content is in the tree of the home, wherever it is from
            contradiction = contradiction or f"{path}: {REASONS[kind]}"
        if kind == FILE and names[path] > 1:
            files.append(File(path, REFUSED, reason="the archive has this name more than once"))
        elif kind != FILE:
            files.append(File(path, REFUSED, reason=damaged.get(path, REASONS[kind])))
            if kind in (NESTED, DAMAGED):
                damaged.setdefault(path, REASONS[kind])
        elif why := _in_damaged(path, damaged):
            files.append(File(path, REFUSED, reason=f"its archive is damaged: {why}"))
        elif path in seen.files:
            files.append(_file(path, seen))
        else:
            reason = _reason(path, seen)
            files.append(File(path, REFUSED, reason=reason or "not read"))
            if not reason:
                contradiction = contradiction or f"{path}: it is in the shard, but algdata has not seen it"
    for path in seen.files:
        if path not in names and not _in_damaged(path, damaged):
            contradiction = (
                contradiction or f"{path}: algdata has read it, but it is not in the shard's listing"
            )
    return files, contradiction


def scattered(listed: Iterable[Listed]) -> set[str]:
    """Directories whose files do not stand together. algdata takes each part of them for a home."""
    result: set[str] = set()
    begun: set[str] = set()
    left: set[str] = set()
    seen: set[str] = set()
    now = ""
    for path, kind in listed:
        directory = path[: path.rfind("/") + 1]
        if kind != FILE or path in seen:
            continue
        seen.add(path)
        while not directory.startswith(now):
            left.add(now)
            now = now[: now[:-1].rfind("/") + 1]
        if directory in begun and directory in left:
            result.add(directory)
        begun.add(directory)
        now = directory
    return result


def _in_damaged(path: str, damaged: dict[str, str]) -> str:
    """Why an archive in a home's directory, in which the file is, is damaged; empty if it is not."""
    if not damaged:
        return ""
    ends = (at for at, letter in enumerate(path) if letter == "/")
    return next((damaged[path[:end]] for end in ends if path[:end] in damaged), "")


def _file(path: str, seen: Seen) -> File:
    status, kind, records = seen.files[path]
    if status in STATUS:
        return File(path, STATUS[status], kind, records)
    return File(path, REFUSED, kind, 0, seen.errors.get(path, f"it is {status}"))


def _reason(path: str, seen: Seen) -> str:
    if path in seen.errors:
        return seen.errors[path]
    start = f"cannot read {path}: "
    return next((text.removeprefix(start) for text in seen.errors.values() if text.startswith(start)), "")
