# SPDX-License-Identifier: Apache-2.0
"""Loads one shard, on an executor: runs algdata on it and stages its rows as Parquet."""

import contextlib
import datetime
import hashlib
import os
import sys
from collections import Counter
from collections.abc import Iterator
from dataclasses import dataclass, field
from typing import TypeVar

from algdata_fleet import FleetError
from algdata_fleet.formats import QUERIES, SEEN, parse_kinds, read_kinds, schemas
from algdata_fleet.listing import Listed
from algdata_fleet.reconcile import EMPTY, LOADED, REFUSED, File, Seen, reconcile, scattered, seen_by_algdata
from algdata_fleet.rows import OtherRows, RecordRows
from algdata_fleet.shards import Shard
from algdata_fleet.staging import Counts, ShardWriter
from algdata_fleet.templates import Place, Templates
from algdata_fleet.tool import Limits, Tool, ToolFailure, answer, objects

T = TypeVar("T")


@dataclass(frozen=True)
class Job:
    """What is the same for all shards of a load."""

    source: str
    staging: str
    templates: Templates
    algdata: str
    kinds: str  # what `algdata kinds --format json` prints on the driver
    limits: Limits
    days: frozenset[datetime.date]  # that the load replaces


@dataclass
class Report:
    """What became of a shard."""

    shard: Shard
    files: dict[str, int] = field(default_factory=dict)  # by status
    records: int = 0
    rows: Counts = field(default_factory=Counter)
    attempt: str = ""
    quarantined: str = ""
    refused: list[tuple[str, str]] = field(default_factory=list)  # the first refused files, with reasons


class WrongWorker(FleetError):
    """An executor that would write other tables than the driver expects, or does not see its shards."""


_checked: dict[str, str] = {}


def require_same_kinds(job: Job) -> None:
    """Once per process."""
    if job.algdata not in _checked:
        _checked[job.algdata] = hashlib.sha256(read_kinds(job.algdata)[1].encode()).hexdigest()
    if _checked[job.algdata] != hashlib.sha256(job.kinds.encode()).hexdigest():
        raise WrongWorker(f"{os.uname().nodename}: {job.algdata} has other formats than on the driver")


def require_shard(job: Job, shard: Shard) -> None:
    """Where a disk is not mounted, each shard would be missing. That is no reason to replace a night."""
    if shard.refused or shard.loose:
        return
    for path in shard.paths:
        if not os.path.lexists(os.path.join(job.source, path)):
            raise WrongWorker(
                f"{os.uname().nodename}: {shard.name} is missing, which the driver has listed; is "
                f"{job.source} the same directory on every machine?"
            )


def load_parts(job: Job, shard: Shard) -> list[Report]:
    """Halves a group of homes that cannot be loaded together, so that only the home at fault is left out."""
    report = load_shard(job, shard)
    if not report.quarantined or len(shard.paths) == 1:
        return [report]
    return [part for half in shard.halves() for part in load_parts(job, half)]


def load_shard(job: Job, shard: Shard) -> Report:
    """All rows of the shard are staged, or the shard is quarantined and none is."""
    require_same_kinds(job)
    require_shard(job, shard)
    kinds = parse_kinds(job.kinds)
    tables = schemas(kinds, job.templates.columns)
    report = Report(shard)
    with ShardWriter(job.staging, shard.number, tables) as writer:
        report.attempt = writer.attempt
        try:
            if shard.refused:
                raise ToolFailure(shard.refused)
            ShardLoader(job, shard, report, writer).load()
        except ToolFailure as failure:
            writer.discard()
            report.quarantined = str(failure)
            report.files, report.records, report.refused = {}, 0, []
            _write_quarantine(job, shard, writer, str(failure))
        writer.finish()
        report.rows = writer.rows
    return report


def _write_quarantine(job: Job, shard: Shard, writer: ShardWriter, reason: str) -> None:
    rows = OtherRows(
        "quarantine", writer.schemas["quarantine"], shard.name, job.templates.columns, writer.write
    )
    nowhere = Place(shard.day, (None,) * len(job.templates.columns))  # type: ignore[arg-type]
    rows.add(nowhere, shard.name, {"reason": reason})
    rows.flush()


def _files_below(directory: str) -> Iterator[str]:
    """Except for hidden ones, which nobody reads."""
    for where, directories, names in os.walk(directory):
        directories[:] = [name for name in directories if not name.startswith(".")]
        yield from (os.path.join(where, name) for name in names if not name.startswith("."))


def _directory_of(path: str) -> str:
    """With its slash."""
    return path[: path.rfind("/") + 1]


class ShardLoader:
    def __init__(self, job: Job, shard: Shard, report: Report, writer: ShardWriter) -> None:
        self.job = job
        self.shard = shard
        self.report = report
        self.writer = writer
        self.columns = job.templates.columns
        self._scattered: set[str] = set()
        # "./" keeps a name from being an option or standard input.
        self.paths = [f"./{path}" for path in shard.paths]

    def load(self) -> None:
        before = self._stamp()
        files = self._files()
        self._places: dict[str, Place] = {}
        for file in files:
            self._place(file)
        if self._places:
            self._load_records(files)
            self._directories = self._places_of_directories()
            self._listed_paths = {path for file in files for path in (file.path, _directory_of(file.path))}
            for table in QUERIES:
                self._load_other(table)
        self._load_files(files)
        if self._stamp() != before:
            raise ToolFailure("it has changed while it was read")
        self.report.files = dict(Counter(file.status for file in files))
        self.report.refused = [(file.path, file.reason) for file in files if file.status == REFUSED][:5]

    def _stamp(self) -> bytes:
        """Differs if a file is written to, added or removed, which only some of the passes would see."""
        digest = hashlib.sha256()
        for path in self.paths:
            top = os.path.join(self.job.source, path)
            for name in sorted(_files_below(top)) if os.path.isdir(top) else [top]:
                with contextlib.suppress(FileNotFoundError):
                    is_now = os.lstat(name)
                    state = (name, is_now.st_ino, is_now.st_size, is_now.st_mtime_ns)
                    digest.update(repr(state).encode("utf-8", "surrogateescape"))
        return digest.digest()

    def _files(self) -> list[File]:
        if self.shard.loose:
            return [
                File(path, REFUSED, reason="it is outside of the directories of homes")
                for path, _ in self._listed()
            ]
        seen, listed = self._seen(), self._listed()
        self._scattered = scattered(listed)
        files, contradiction = reconcile(listed, seen)
        if contradiction:
            raise ToolFailure(f"the files do not agree with an independent listing: {contradiction}")
        return files

    def _listed(self) -> list[Listed]:
        # -P, because the source is the working directory, and a shard may be named as a module is.
        module = [sys.executable, "-P", "-m", "algdata_fleet.listing"]
        return list(
            objects([*module, str(self.job.limits.files), *self.paths], self.job.source, self.job.limits)
        )

    def _algdata(self, command: str, *rest: str) -> list[str]:
        return [self.job.algdata, command, "--format", "ndjson", *rest]

    def _sql(self, query: str) -> list[str]:
        return self._algdata("sql", "--config", os.devnull, "--", *self.paths, query)

    def _seen(self) -> Seen:
        rows = answer(self._sql(SEEN), self.job.source, self.job.limits)
        seen = seen_by_algdata(self._limited(rows), self.shard.paths)
        if seen.fatal:
            raise ToolFailure(seen.fatal)
        return seen

    def _limited(self, rows: Iterator[T]) -> Iterator[T]:
        """Before the rows fill the memory of the executor."""
        for count, row in enumerate(rows):
            if count == self.job.limits.files:
                raise ToolFailure(f"it has more than {count} files, the limit for a shard")
            yield row

    def _place(self, file: File) -> None:
        """A file that belongs nowhere is refused."""
        place = self.job.templates.place(file.path)
        if _directory_of(file.path) in self._scattered:
            place = "the files of its directory do not stand together in the archive"
        if isinstance(place, Place) and place.day not in self.job.days:
            place = f"it is of {place.day}, which neither a path of the source nor --day states"
        if isinstance(place, Place):
            self._places[file.path] = place
        elif file.status in (LOADED, EMPTY):
            file.status, file.records, file.reason = REFUSED, 0, place

    def _load_records(self, files: list[File]) -> None:
        records = RecordRows(parse_kinds(self.job.kinds), self.shard.name, self.columns, self.writer.write)
        command = self._algdata("export", "--", *self.paths)
        with Tool(command, self.job.source, self.job.limits, good=(0, 1, 2)) as tool:
            records.read(tool.lines(), {f.path: self._places[f.path] for f in files if f.status == LOADED})
        for file in files:
            if file.status == LOADED:
                if (got := records.counts.get(file.path, 0)) != file.records:
                    raise ToolFailure(
                        f"{file.path}: {got} of {file.records} records; did it change while it was read?"
                    )
                self.report.records += got

    def _places_of_directories(self) -> dict[str, Place]:
        """Rows about a home name its directory. They are about no device."""
        device = self.columns.index("device")
        directories: dict[str, Place] = {}
        for path, place in self._places.items():
            directory = _directory_of(path)
            if directory not in directories:
                values = (*place.values[:device], None, *place.values[device + 1 :])
                directories[directory] = Place(place.day, values)
        return directories

    def _load_other(self, table: str) -> None:
        rows = OtherRows(table, self.writer.schemas[table], self.shard.name, self.columns, self.writer.write)
        for row in answer(self._sql(QUERIES[table]), self.job.source, self.job.limits):
            path = row.pop("_path").removeprefix("./")
            if "directory" in row:
                row["directory"] = row["directory"].removeprefix("./")
            if found := self._places.get(path) or self._directories.get(path):
                rows.add(found, path, row)
            elif not self._is_listed(path):
                raise ToolFailure(f"{path}: {table} has a row of it, but it is not in the shard's listing")
        rows.flush()

    def _is_listed(self, path: str) -> bool:
        """The file itself, its directory, or the damaged archive that it is in."""
        ends = (at for at, letter in enumerate(path) if letter == "/")
        return path in self._listed_paths or any(path[:end] in self._listed_paths for end in ends)

    def _load_files(self, files: list[File]) -> None:
        rows = OtherRows(
            "file", self.writer.schemas["file"], self.shard.name, self.columns, self.writer.write
        )
        nowhere = Place(self.shard.day, (None,) * len(self.columns))  # type: ignore[arg-type]
        for file in files:
            place = self._places.get(file.path, nowhere)
            row = {
                "kind": file.kind,
                "status": file.status,
                "records": file.records,
                "reason": file.reason or None,
            }
            rows.add(place, file.path, row)
        rows.flush()
