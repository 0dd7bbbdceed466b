# SPDX-License-Identifier: Apache-2.0
"""Results as a table for people, CSV, JSON or Parquet."""

import contextlib
import csv
import io
import json
import os
import sys
import tempfile
from collections.abc import Iterator
from typing import IO, Any

import pyarrow as pa
import pyarrow.parquet as pq

from algdata_fleet import FleetError

FORMATS = ("table", "csv", "json", "parquet")


def write(rows: pa.Table, form: str, path: str | None) -> None:
    if form == "parquet" and path is None and sys.stdout.isatty():
        raise FleetError("Parquet is no text for a terminal; name a file with -o")
    with _destination(path) as out:
        if form == "parquet":
            buffer = io.BytesIO()
            pq.write_table(rows, buffer)
            out.write(buffer.getvalue())
        else:
            text = {"table": table_text, "csv": csv_text, "json": json_text}[form](rows)
            out.write(text.encode("utf-8", "backslashreplace"))


@contextlib.contextmanager
def _destination(path: str | None) -> Iterator[IO[bytes]]:
    """A file appears whole or not at all. A device or a pipe is written to, and a link stays."""
    if path is None:
        yield sys.stdout.buffer
        sys.stdout.buffer.flush()
        return
    target = os.path.realpath(path)
    if os.path.exists(target) and not os.path.isfile(target):
        try:
            with open(target, "wb") as out:
                yield out
        except OSError as error:
            raise FleetError(f"{path}: cannot write it: {error.strerror}") from None
        return
    directory = os.path.dirname(target)
    try:
        handle, name = tempfile.mkstemp(dir=directory, prefix=".algdata-fleet-")
    except OSError as error:
        raise FleetError(f"{path}: cannot write it: {error.strerror}") from None
    try:
        with os.fdopen(handle, "wb") as out:
            yield out
        umask = os.umask(0)
        os.umask(umask)
        os.chmod(name, 0o666 & ~umask)
        os.replace(name, target)
    except BaseException as error:
        os.unlink(name)
        if isinstance(error, OSError):
            raise FleetError(f"{path}: cannot write it: {error.strerror}") from None
        raise


def _cells(rows: pa.Table) -> list[list[Any]]:
    columns = [column.to_pylist() for column in rows.columns]
    return [list(row) for row in zip(*columns, strict=True)]


def _plain(value: Any) -> Any:
    """A value as JSON has it."""
    return value if value is None or isinstance(value, (bool, int, float, str, list, dict)) else str(value)


def printable(text: str) -> str:
    """Without what a terminal would obey, such as the end of a line."""
    if text.isprintable():
        return text
    letters = (
        c if c.isprintable() else c.encode("unicode_escape").decode() for c in text.replace("\\", r"\\")
    )
    return "".join(letters)


def _cell(value: Any) -> str:
    return "-" if value is None else printable(str(value))


def table_text(rows: pa.Table) -> str:
    cells = [rows.column_names, *([_cell(value) for value in row] for row in _cells(rows))]
    numbers = [
        pa.types.is_integer(t) or pa.types.is_floating(t) or pa.types.is_decimal(t) for t in rows.schema.types
    ]
    widths = [max(len(row[at]) for row in cells) for at in range(rows.num_columns)]
    lines = (
        "  ".join(
            cell.rjust(width) if number else cell.ljust(width)
            for cell, width, number in zip(row, widths, numbers, strict=True)
        ).rstrip()
        for row in cells
    )
    return "".join(f"{line}\n" for line in lines)


def csv_text(rows: pa.Table) -> str:
    text = io.StringIO()
    writer = csv.writer(text, lineterminator="\n")
    writer.writerow(rows.column_names)
    writer.writerows(_cells(rows))
    return text.getvalue()


def json_text(rows: pa.Table) -> str:
    """An object per line."""
    names = rows.column_names
    return "".join(
        json.dumps(dict(zip(names, map(_plain, row), strict=True)), ensure_ascii=False) + "\n"
        for row in _cells(rows)
    )
