# SPDX-License-Identifier: Apache-2.0
"""Writes the rows of one shard below the staging directory. Its files appear whole or not at all.

An executor that the driver has lost can still run, beside another attempt at its shard. So each
attempt has files of its own, and the driver loads those of the attempts that have reported.
"""

import os
import uuid
from collections import Counter
from types import TracebackType

import pyarrow as pa
import pyarrow.compute as pc
import pyarrow.parquet as pq

Counts = Counter[tuple[str, str]]  # rows by table and day


def file_of(number: int, attempt: str) -> str:
    return f"{number:06}-{attempt}.parquet"


class ShardWriter:
    """Readers ignore names that begin with a dot, so that a killed task leaves nothing they see."""

    def __init__(self, staging: str, number: int, schemas: dict[str, pa.Schema]) -> None:
        self.staging = staging
        self.number = number
        self.schemas = schemas
        self.rows: Counts = Counter()
        self.attempt = uuid.uuid4().hex[:8]
        self._writers: dict[str, pq.ParquetWriter] = {}

    def _path(self, table: str, finished: bool) -> str:
        name = file_of(self.number, self.attempt)
        return os.path.join(self.staging, table, name if finished else f".{name}")

    def write(self, table: str, rows: pa.Table) -> None:
        if table not in self._writers:
            os.makedirs(os.path.join(self.staging, table), exist_ok=True)
            self._writers[table] = pq.ParquetWriter(
                self._path(table, finished=False), self.schemas[table], compression="lz4"
            )
        self._writers[table].write_table(rows.cast(self.schemas[table]))
        for count in pc.value_counts(rows["day"]).to_pylist():
            self.rows[table, str(count["values"])] += count["counts"]

    def finish(self) -> None:
        for table, writer in self._writers.items():
            writer.close()
            os.rename(self._path(table, finished=False), self._path(table, finished=True))

    def discard(self) -> None:
        """All or nothing of a shard is loaded."""
        for table, writer in self._writers.items():
            writer.close()
            for finished in (False, True):
                if os.path.exists(path := self._path(table, finished)):
                    os.remove(path)
        self._writers, self.rows = {}, Counter()

    def __enter__(self) -> "ShardWriter":
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        if kind is not None:
            self.discard()
