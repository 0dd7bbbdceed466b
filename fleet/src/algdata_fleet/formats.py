# SPDX-License-Identifier: Apache-2.0
"""The tables of a dataset.

Those of records come from `algdata kinds --format json`: their names, columns and types are
those of `algdata sql`. A field that is new there needs no change here.
"""

import json
import subprocess
from collections.abc import Iterable
from dataclasses import dataclass
from typing import Any

import pyarrow as pa

from algdata_fleet import FleetError

# Engines differ about unsigned numbers, so each is the next larger signed one.
TYPES = {
    "MAC": pa.string(),
    "int8": pa.int16(),
    "uint8": pa.int16(),
    "int16": pa.int16(),
    "uint16": pa.int32(),
    "int32": pa.int32(),
    "uint32": pa.int64(),
    "float": pa.float64(),  # its two decimals
}


@dataclass(frozen=True)
class Field:
    name: str
    type: pa.DataType
    is_mac: bool
    count: int  # elements of an array; 1 for a single value
    inside: str  # "record", or the array of entries that has it
    table: str
    index: str  # of an array or an entry: the column that counts them


@dataclass(frozen=True)
class Kind:
    """A kind of record file, with a table of its records and perhaps one of their parts."""

    name: str
    fields: tuple[Field, ...]
    keys: frozenset[str]

    @property
    def table(self) -> str:
        return self.name.replace("-", "_")

    @property
    def singles(self) -> list[Field]:
        return [field for field in self.fields if not field.index]

    @property
    def parts(self) -> list[Field]:
        return [field for field in self.fields if field.index]

    @property
    def part_keys(self) -> list[Field]:
        """Fields of the record that its parts have too."""
        return [field for field in self.singles if field.name in self.keys]

    @property
    def entries(self) -> str | None:
        """The array of entries; None if the parts are elements of arrays of numbers."""
        names = {field.inside for field in self.parts} - {"record"}
        return next(iter(names), None)

    def json_schema(self) -> pa.Schema:
        """The types of a record in NDJSON."""
        fields = [pa.field(f.name, f.type) for f in self.singles]
        if self.entries is None:
            fields += [pa.field(f.name, pa.list_(f.type)) for f in self.parts]
        else:
            inner = pa.struct([pa.field(f.name, f.type) for f in self.parts])
            fields.append(pa.field(self.entries, pa.list_(inner)))
        return pa.schema(fields)


def _field(row: dict[str, Any]) -> Field:
    if row["type"] not in TYPES:
        raise FleetError(
            f"{row['kind']}.{row['field']}: unknown type {row['type']}, expected one of {', '.join(TYPES)}"
        )
    return Field(
        row["field"],
        TYPES[row["type"]],
        row["type"] == "MAC",
        row["count"],
        row["in"],
        row["table"],
        row["index"],
    )


def parse_kinds(text: str) -> dict[str, Kind]:
    rows: dict[str, list[dict[str, Any]]] = {}
    for row in json.loads(text):
        rows.setdefault(row["kind"], []).append(row)
    return {
        name: Kind(name, tuple(_field(row) for row in of_kind), frozenset(of_kind[0]["key"].split(" + ")))
        for name, of_kind in rows.items()
    }


def read_kinds(algdata: str) -> tuple[dict[str, Kind], str]:
    """The kinds that the command knows, and its text about them."""
    try:
        done = subprocess.run([algdata, "kinds", "--format", "json"], capture_output=True, check=True)
    except FileNotFoundError:
        raise FleetError(
            f"{algdata}: not found; install algdata on every machine, or use --algdata"
        ) from None
    except (OSError, subprocess.CalledProcessError) as error:
        raise FleetError(f"{algdata}: cannot list the kinds of record files: {error}") from None
    try:
        text = done.stdout.decode()
        return parse_kinds(text), text
    except (ValueError, KeyError, TypeError, AttributeError) as error:
        raise FleetError(f"{algdata}: it does not list its kinds as expected: {error}") from None


# ---- Tables of what is not a record ------------------------------------------

FINDING = [
    ("line", pa.int64()),
    ("col", pa.int64()),
    ("severity", pa.string()),
    ("rule", pa.string()),
    ("field", pa.string()),
    ("message", pa.string()),
]


def _to_its_end(table: str, *columns: str) -> str:
    """A query whose last row is of nulls: a query that fails on its way looks like one with fewer rows."""
    nulls = ", ".join("NULL" for _ in columns)
    return f"SELECT {', '.join(columns)} FROM {table} UNION ALL SELECT {nulls}"


QUERIES = {
    "finding": _to_its_end(
        "finding", "path AS _path", "line", '"column" AS col', "severity", "rule", "field", "message"
    ),
    "audit": _to_its_end(
        "audit",
        "coalesce(file, directory || '/') AS _path",
        *("directory", "line", "severity", "rule", "field", "message"),
    ),
    "tree": _to_its_end(
        "tree",
        "directory || '/' AS _path",
        *("deviceMAC", "fatherMAC", "depth", "apRank", "medium", "backhaulBand", "backhaulRssi"),
        *("backhaulRxRate", "backhaulTxRate", "throughput", "stations", "attachment"),
    ),
}
SEEN = "SELECT path, status, kind, records, NULL AS message FROM file UNION ALL " + _to_its_end(
    "error", "path", "NULL", "NULL", "NULL", "message"
)
OTHER_TABLES: dict[str, list[tuple[str, pa.DataType]]] = {
    "finding": FINDING,
    "audit": [("directory", pa.string()), *(column for column in FINDING if column[0] != "col")],
    "tree": [
        ("deviceMAC", pa.string()),
        ("fatherMAC", pa.string()),
        ("depth", pa.int16()),
        ("apRank", pa.int16()),
        ("medium", pa.string()),
        ("backhaulBand", pa.int16()),
        ("backhaulRssi", pa.int16()),
        ("backhaulRxRate", pa.int32()),
        ("backhaulTxRate", pa.int32()),
        ("throughput", pa.int32()),
        ("stations", pa.int32()),
        ("attachment", pa.string()),
    ],
    "file": [
        ("kind", pa.string()),
        ("status", pa.string()),
        ("records", pa.int64()),
        ("reason", pa.string()),
    ],
    "quarantine": [("reason", pa.string())],
}


def schemas(kinds: dict[str, Kind], path_columns: Iterable[str]) -> dict[str, pa.Schema]:
    """Of all tables: the day, what the path says, where the row is from, and the values."""
    head = [pa.field("day", pa.date32()), *(pa.field(name, pa.string()) for name in path_columns)]
    where = [pa.field("_shard", pa.string()), pa.field("_path", pa.string())]
    record = pa.field("_record", pa.int32())
    result: dict[str, pa.Schema] = {}
    for kind in kinds.values():
        values = [pa.field(f.name, f.type) for f in kind.singles]
        result[kind.table] = pa.schema([*head, *where, record, *values])
        if kind.parts:
            keys = [pa.field(f.name, f.type) for f in kind.part_keys]
            index = pa.field(kind.parts[0].index, pa.int16())
            values = [pa.field(f.name, f.type) for f in kind.parts]
            result[kind.parts[0].table] = pa.schema([*head, *where, record, *keys, index, *values])
    for name, columns in OTHER_TABLES.items():
        result[name] = pa.schema([*head, *where, *(pa.field(*column) for column in columns)])
    for name, schema in result.items():
        lower = [column.lower() for column in schema.names]
        if twice := {column for column in lower if lower.count(column) > 1}:
            raise FleetError(f"--path: {', '.join(sorted(twice))} is a column of {name}; use another name")
    return result
