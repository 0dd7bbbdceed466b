# SPDX-License-Identifier: Apache-2.0
"""Turns what algdata prints into Arrow tables, batch by batch, with the columns of a dataset."""

import io
import json
from collections.abc import Callable, Iterable, Mapping
from dataclasses import dataclass, field
from typing import Any

import pyarrow as pa
import pyarrow.compute as pc
import pyarrow.json as pj

from algdata_fleet.formats import Field, Kind
from algdata_fleet.templates import Place

BATCH_BYTES = 8 << 20
Write = Callable[[str, pa.Table], None]  # to the table of this name


@dataclass
class Run:
    """Rows that follow each other and come from one file."""

    place: Place
    path: str
    first: int = 0  # index of the first record in its file
    count: int = 0


@dataclass
class Batch:
    """Records of one kind, as they were printed."""

    lines: list[bytes] = field(default_factory=list)
    runs: list[Run] = field(default_factory=list)
    size: int = 0


def head_columns(runs: list[Run], shard: str, path_columns: list[str]) -> dict[str, pa.Array]:
    """For each row of the runs: the day, what the path says, and where the row is from."""
    which = pa.array([number for number, run in enumerate(runs) for _ in range(run.count)], pa.int32())

    def spread(values: list[Any], kind: pa.DataType) -> pa.Array:
        return pa.array(values, kind).take(which)

    columns = {"day": spread([run.place.day for run in runs], pa.date32())}
    for number, name in enumerate(path_columns):
        columns[name] = spread([run.place.values[number] for run in runs], pa.string())
    columns["_shard"] = pa.repeat(pa.scalar(shard), len(which))
    columns["_path"] = spread([run.path for run in runs], pa.string())
    return columns


class RecordRows:
    """Distributes the lines of `algdata export --format ndjson` to the tables of their kinds."""

    def __init__(self, kinds: dict[str, Kind], shard: str, path_columns: list[str], write: Write) -> None:
        self.kinds = kinds
        self.shard = shard
        self.path_columns = path_columns
        self.write = write
        self.counts: dict[str, int] = {}  # records by path, left out ones too
        self._batches: dict[str, Batch] = {}

    def read(self, lines: Iterable[bytes], places: Mapping[str, Place]) -> None:
        """Records of a file without a place are counted and left out."""
        start = b"\n"  # of each record of the present file
        batch: Batch | None = None
        path = ""
        for line in lines:
            if not line.startswith(start):
                start, kind, path = _start_of(line)
                batch = self._start(kind, path, places.get(path))
            self.counts[path] += 1
            if batch is None:
                continue
            batch.lines.append(line)
            batch.size += len(line)
            batch.runs[-1].count += 1
            if batch.size >= BATCH_BYTES:
                last = batch.runs[-1]
                self._flush(kind)
                batch = self._batches[kind] = Batch(runs=[Run(last.place, path, self.counts[path])])
        for kind in list(self._batches):
            self._flush(kind)

    def _start(self, kind: str, path: str, place: Place | None) -> Batch | None:
        self.counts.setdefault(path, 0)
        if place is None:
            return None
        batch = self._batches.setdefault(kind, Batch())
        batch.runs.append(Run(place, path, self.counts[path]))
        return batch

    def _flush(self, kind: str) -> None:
        batch = self._batches.pop(kind)
        if batch.lines:
            for table, rows in tables_of(self.kinds[kind], batch, self.shard, self.path_columns):
                self.write(table, rows)


def _start_of(line: bytes) -> tuple[bytes, str, str]:
    """The text that all records of a file begin with, its kind and its path."""
    text = line.decode()
    at = text.index('"source":') + len('"source":')
    path, end = json.JSONDecoder().raw_decode(text, at)
    kind = text[len('{"kind":"') : text.index('","source":')]
    return text[: end + 1].encode(), kind, path.removeprefix("./")


def parse(text: bytes, schema: pa.Schema) -> pa.Table:
    return pj.read_json(
        io.BytesIO(text),
        read_options=pj.ReadOptions(use_threads=False, block_size=len(text) + 1),
        parse_options=pj.ParseOptions(explicit_schema=schema, unexpected_field_behavior="ignore"),
    )


def tables_of(kind: Kind, batch: Batch, shard: str, path_columns: list[str]) -> list[tuple[str, pa.Table]]:
    """The rows of the kind's table, and of the table of its parts."""
    values = parse(b"".join(batch.lines), kind.json_schema()).combine_chunks()
    head = head_columns(batch.runs, shard, path_columns)
    numbers = [at for run in batch.runs for at in range(run.first, run.first + run.count)]
    head["_record"] = pa.array(numbers, pa.int32())
    singles = {single.name: _value(single, values[single.name]) for single in kind.singles}
    result = [(kind.table, pa.table({**head, **singles}))]
    if kind.parts:
        result.append((kind.parts[0].table, _parts(kind, values, head, singles)))
    return result


def _parts(kind: Kind, values: pa.Table, head: dict[str, pa.Array], singles: dict[str, Any]) -> pa.Table:
    """One row per element of the arrays, or per entry. The key of the record comes first."""
    if kind.entries is not None:
        lists = _one(values[kind.entries])
        lengths = pc.fill_null(pc.list_value_length(lists), 0).to_pylist()
        flat = pc.list_flatten(lists)
        columns = {part.name: _value(part, pc.struct_field(flat, part.name)) for part in kind.parts}
    else:
        lengths = [kind.parts[0].count] * len(values)
        columns = {part.name: _value(part, _elements(part, _one(values[part.name]))) for part in kind.parts}
    record = pa.array([row for row, length in enumerate(lengths) for _ in range(length)], pa.int32())
    index = pa.array([at for length in lengths for at in range(length)], pa.int16())
    keys = {key.name: singles[key.name] for key in kind.part_keys}
    before = {name: column.take(record) for name, column in {**head, **keys}.items()}
    return pa.table({**before, kind.parts[0].index: index, **columns})


def _elements(part: Field, lists: pa.Array) -> pa.Array:
    """The elements of all arrays. An array that is damaged is filled up with nulls."""
    lengths = pc.fill_null(pc.list_value_length(lists), 0)
    if pc.all(pc.equal(lengths, part.count), min_count=0).as_py():
        return pc.list_flatten(lists)
    filled = (((row or []) + [None] * part.count)[: part.count] for row in lists.to_pylist())
    return pa.array([value for row in filled for value in row], part.type)


def _one(column: pa.ChunkedArray | pa.Array) -> pa.Array:
    return column.combine_chunks() if isinstance(column, pa.ChunkedArray) else column


def _value(of: Field, column: pa.ChunkedArray | pa.Array) -> pa.Array:
    """MACs in lower case, so that they are equal in every engine."""
    array = _one(column)
    return pc.utf8_lower(array) if of.is_mac else array


class OtherRows:
    """Rows of a table that is not of records: of objects with a path, and values by column."""

    def __init__(
        self, table: str, schema: pa.Schema, shard: str, path_columns: list[str], write: Write
    ) -> None:
        self.table = table
        self.schema = schema
        self.shard = shard
        self.path_columns = path_columns
        self.write = write
        self._rows: list[dict[str, Any]] = []
        self._runs: list[Run] = []

    def add(self, place: Place, path: str, row: dict[str, Any]) -> None:
        self._rows.append(row)
        self._runs.append(Run(place, path, 0, 1))
        if len(self._rows) >= 20_000:
            self.flush()

    def flush(self) -> None:
        if not self._rows:
            return
        columns = head_columns(self._runs, self.shard, self.path_columns)
        for column in self.schema:
            if column.name not in columns:
                columns[column.name] = pa.array([row.get(column.name) for row in self._rows], column.type)
        self.write(self.table, pa.table(columns, self.schema))
        self._rows, self._runs = [], []
