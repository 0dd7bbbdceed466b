# SPDX-License-Identifier: Apache-2.0
"""Lists the shards of a source: archives, and groups of the directories of homes."""

import datetime
import os
from collections.abc import Iterator, Sequence
from dataclasses import dataclass, field, replace

from algdata_fleet import FleetError
from algdata_fleet.names import names_archive, printed
from algdata_fleet.templates import Templates

HOMES_PER_SHARD = 1000
NAME_BYTES = 500_000  # of the names in one shard; they are arguments of a command


@dataclass(frozen=True)
class Shard:
    """What one task loads."""

    number: int
    name: str
    paths: tuple[str, ...]  # below the source
    day: datetime.date | None  # if its own path states one
    refused: str = ""  # why nothing of it is read
    loose: bool = False  # files outside of the directories of homes

    def halves(self) -> list["Shard"]:
        middle = len(self.paths) // 2
        parts = (self.paths[:middle], self.paths[middle:])
        return [replace(self, name=printed(_ends(part)), paths=part) for part in parts]


@dataclass
class Found:
    shards: list[Shard] = field(default_factory=list)
    days: set[datetime.date] = field(default_factory=set)  # also of directories without files

    def add(
        self, name: str, paths: list[str], templates: Templates, refused: str = "", loose: bool = False
    ) -> None:
        day = templates.day_of_start(paths[0])
        if day is not None:
            self.days.add(day)
        self.shards.append(Shard(len(self.shards), printed(name), tuple(paths), day, refused, loose))


def find_shards(source: str, templates: Templates, homes_per_shard: int = HOMES_PER_SHARD) -> Found:
    if not os.path.isdir(source):
        raise FleetError(f"{source}: it is no directory, expected one with shards")
    found = Found()
    _search(source, "", templates, homes_per_shard, found)
    return found


def _search(source: str, directory: str, templates: Templates, homes_per_shard: int, found: Found) -> None:
    day = templates.day_of_start(directory) if directory else None
    if day is not None:
        found.days.add(day)
    try:
        entries = sorted(os.scandir(os.path.join(source, directory)), key=lambda entry: entry.name)
    except OSError as error:
        found.add(directory or ".", [directory], templates, refused=f"cannot list it: {error.strerror}")
        return
    homes: list[str] = []
    loose: list[str] = []
    for entry in entries:
        path = f"{directory}/{entry.name}" if directory else entry.name
        if entry.name.startswith("."):
            continue
        if entry.is_symlink():
            found.add(path, [path], templates, refused="a symbolic link is not followed")
        elif entry.is_file():
            if names_archive(entry.name):
                found.add(path, [path], templates)
            else:
                loose.append(path)
        elif entry.is_dir():
            if templates.is_home(path) or path.count("/") == templates.deepest_home:
                homes.append(path)
            else:
                _search(source, path, templates, homes_per_shard, found)
    for group in _groups(homes, homes_per_shard):
        found.add(_ends(group), group, templates)
    for group in _groups(loose, len(loose)):
        name = f"{directory or '.'}/" if len(group) == len(loose) else _ends(group)
        found.add(name, group, templates, loose=True)


def _ends(group: Sequence[str]) -> str:
    return group[0] if len(group) == 1 else f"{group[0]}..{os.path.basename(group[-1])}"


def _groups(paths: list[str], most: int) -> Iterator[list[str]]:
    group: list[str] = []
    size = 0
    for path in paths:
        length = len(os.fsencode(path)) + 8
        if group and (len(group) == most or size + length > NAME_BYTES):
            yield group
            group, size = [], 0
        group.append(path)
        size += length
    if group:
        yield group
