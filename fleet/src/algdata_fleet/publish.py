# SPDX-License-Identifier: Apache-2.0
"""Replaces partitions, each at once, and prevents two loads into one target at a time.

A partition is the directory TABLE/day=DAY. The new one changes places with the old one in a
single system call, so whoever looks sees one of them, whole, at any time.
"""

import ctypes
import fcntl
import os
import shutil
import uuid
from collections.abc import Callable
from types import TracebackType

from algdata_fleet import FleetError

STAGING = "_staging"  # engines ignore names that begin with an underscore
AT_FDCWD = -100
RENAME_EXCHANGE = 2


def exchange(one: str, other: str) -> None:
    """Both paths exist before and after, with each other's content."""
    libc = ctypes.CDLL(None, use_errno=True)
    result = libc.renameat2(AT_FDCWD, os.fsencode(one), AT_FDCWD, os.fsencode(other), RENAME_EXCHANGE)
    if result != 0:
        code = ctypes.get_errno()
        raise FleetError(
            f"{other}: cannot replace it: {os.strerror(code)}; expected a file system that can exchange two "
            "directories (ext4, xfs, btrfs, tmpfs)"
        )


def publish(new: str, target: str) -> None:
    """Afterwards `new` is what the target was, or does not exist."""
    os.makedirs(os.path.dirname(target), exist_ok=True)
    if os.path.isdir(target):
        exchange(new, target)
    else:
        os.rename(new, target)


class Staging:
    """The directory of a load. What a killed load has left is removed by the next one."""

    def __init__(self, target: str) -> None:
        self.target = target
        self.run = os.path.join(target, STAGING, uuid.uuid4().hex)

    def __enter__(self) -> "Staging":
        os.makedirs(os.path.join(self.target, STAGING), exist_ok=True)
        self._lock = os.open(os.path.join(self.target, STAGING, "lock"), os.O_CREAT | os.O_RDWR, 0o666)
        try:
            fcntl.flock(self._lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except OSError:
            os.close(self._lock)
            raise FleetError(f"{self.target}: another load is writing to it") from None
        try:
            self._clean()
            self._require_exchange()
        except BaseException:
            self.__exit__(None, None, None)
            raise
        return self

    def _require_exchange(self) -> None:
        """Before anything is read, because it is needed when some partitions may be replaced already."""
        one, other = os.path.join(self.run, "one"), os.path.join(self.run, "other")
        for path in (one, other):
            os.makedirs(path)
        exchange(one, other)
        for path in (one, other):
            os.rmdir(path)

    def _clean(self) -> None:
        directory = os.path.join(self.target, STAGING)
        for name in os.listdir(directory):
            if name != "lock":
                shutil.rmtree(os.path.join(directory, name), ignore_errors=True)

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        self._clean()
        os.close(self._lock)

    @property
    def shards(self) -> str:
        return os.path.join(self.run, "shards")

    @property
    def accepted(self) -> str:
        """What of the shards is loaded."""
        return os.path.join(self.run, "accepted")

    @property
    def partitions(self) -> str:
        return os.path.join(self.run, "partitions")

    def publish_all(self, on_each: Callable[[str], None] = lambda _: None) -> int:
        """Each partition is replaced at once; a load that is killed here leaves some of them old."""
        partitions = [
            os.path.join(table, day)
            for table in sorted(os.listdir(self.partitions))
            for day in sorted(os.listdir(os.path.join(self.partitions, table)))
            if day.startswith("day=")
        ]
        for count, partition in enumerate(partitions):
            try:
                publish(os.path.join(self.partitions, partition), os.path.join(self.target, partition))
            except (OSError, FleetError) as error:
                why = f"{partition}: {error.strerror}" if isinstance(error, OSError) else str(error)
                raise FleetError(
                    f"{why}; {count} of {len(partitions)} partitions were replaced before, so load again"
                ) from None
            on_each(partition)
        return len(partitions)
