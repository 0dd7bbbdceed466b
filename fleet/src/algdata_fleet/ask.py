# SPDX-License-Identifier: Apache-2.0
"""`algdata-fleet ask`: SQL over a dataset, on Spark or on DuckDB."""

import difflib
import glob
import os
import re
from collections.abc import Iterator
from dataclasses import dataclass
from importlib import resources
from typing import TYPE_CHECKING, Any

import pyarrow as pa
import pyarrow.parquet as pq

from algdata_fleet import FleetError

if TYPE_CHECKING:
    from pyspark.sql import SparkSession


@dataclass(frozen=True)
class Question:
    """A file of SQL that begins with comments: a title, an explanation, and an example of its output."""

    name: str
    title: str
    explanation: str
    example: str
    sql: str


def questions() -> dict[str, Question]:
    """Those of the package, by name."""
    folder = resources.files("algdata_fleet") / "questions"
    files = sorted((entry for entry in folder.iterdir() if entry.name.endswith(".sql")), key=lambda e: e.name)
    parsed = (_parse(entry.name.removesuffix(".sql"), entry.read_text("utf-8")) for entry in files)
    return {question.name: question for question in parsed}


def _parse(name: str, text: str) -> Question:
    lines = text.splitlines()
    comment = "\n".join(line[3:] for line in lines if line.startswith("--"))
    sql = "\n".join(line for line in lines if not line.startswith("--")).strip()
    title, explanation, example = comment.split("\n\n", 2)
    return Question(name, title, explanation, example, sql)


def find_question(name: str) -> str:
    """The SQL of a named question or of a file."""
    known = questions()
    if name in known:
        return known[name].sql
    if not name.endswith(".sql"):
        raise FleetError(f"{name}: there is no such question; expected {', '.join(known)} or a file FILE.sql")
    try:
        with open(name, encoding="utf-8") as file:
            return file.read().strip().rstrip(";")
    except (OSError, UnicodeDecodeError) as error:
        raise FleetError(f"{name}: cannot read it: {error}") from None


def tables_of(target: str) -> list[str]:
    """The tables of a dataset: directories with a partition per day."""
    try:
        names = sorted(os.listdir(target))
    except OSError as error:
        raise FleetError(f"{target}: cannot read it: {error.strerror}") from None
    tables = [name for name in names if re.fullmatch(r"[a-z]\w*", name) and os.path.isdir(f"{target}/{name}")]
    if not tables:
        raise FleetError(f"{target}: it has no tables; expected a dataset of `algdata-fleet load`")
    return tables


def columns_of(target: str) -> pa.Table:
    """The columns of all tables. A column may be missing in some partitions."""
    rows: dict[str, list[str]] = {"table": [], "column": [], "type": []}
    for table in tables_of(target):
        types = {"day": "date"}
        for day in sorted(glob.glob(os.path.join(glob.escape(target), table, "day=*")), reverse=True):
            for path in sorted(glob.glob(os.path.join(glob.escape(day), "*.parquet")))[:1]:
                for field in _schema(path):
                    types.setdefault(field.name, str(field.type))
        for column, kind in types.items():
            rows["table"].append(table)
            rows["column"].append(column)
            rows["type"].append(kind)
    return pa.table(rows)


def _schema(path: str) -> pa.Schema:
    try:
        return pq.read_schema(path)
    except (OSError, pa.ArrowInvalid) as error:
        raise FleetError(f"{path}: cannot read it: {error}") from None


def mentioned(sql: str, tables: list[str]) -> Iterator[str]:
    words = {word.lower() for word in re.findall(r"\w+", sql)}
    return (table for table in tables if table in words)


def no_table(name: str, tables: list[str]) -> FleetError:
    near = difflib.get_close_matches(name.lower(), tables, 1)
    advice = f"did you mean {near[0]}? " if near else ""
    return FleetError(f'no table "{name}"; {advice}The dataset has {", ".join(tables)}')


def _require_query(spark: "SparkSession", sql: str) -> None:
    """Only what reads; Spark would also create and insert."""
    catalyst = "org.apache.spark.sql.catalyst.plans.logical"
    plan = spark._jsparkSession.sessionState().sqlParser().parsePlan(sql)
    if plan.getClass().getSimpleName() in ("DescribeRelation", "DescribeQueryCommand"):
        return
    classes = spark._jvm.java.lang.Class  # type: ignore[union-attr]
    for kind in ("Command", "ParsedStatement"):
        if classes.forName(f"{catalyst}.{kind}").isInstance(plan):
            raise FleetError("expected a query, such as SELECT; nothing else is run")


def ask_spark(spark: "SparkSession", sql: str, target: str, limit: int | None = None) -> pa.Table:
    from py4j.protocol import Py4JError
    from pyspark.errors import PySparkException

    from algdata_fleet.spark import ARROW_TYPES, reason_of

    tables = tables_of(target)
    try:
        _require_query(spark, sql)
        for table in mentioned(sql, tables):
            path = os.path.join(os.path.abspath(target), table)
            spark.read.option("mergeSchema", "true").parquet(path).createOrReplaceTempView(table)
        found = spark.sql(sql)
        types = [ARROW_TYPES.get(field.dataType.typeName(), pa.string()) for field in found.schema]
        rows = (found if limit is None else found.limit(limit)).collect()
        columns = [_column([row[at] for row in rows], kind) for at, kind in enumerate(types)]
        return pa.Table.from_arrays(columns, names=found.columns)
    except PySparkException as error:
        if missing := re.search(r"TABLE_OR_VIEW_NOT_FOUND\] The table or view `(\w+)`", str(error)):
            raise no_table(missing[1], tables) from None
        raise FleetError(_first_lines(str(error))) from None
    except Py4JError as error:
        if "FileNotFoundException" in str(error):
            raise FleetError(f"{target}: a load has replaced what was being read; ask again") from None
        raise FleetError(reason_of(error)) from None


def _column(values: list[Any], kind: pa.DataType) -> pa.Array:
    if kind == pa.string():
        values = [value if value is None else str(value) for value in values]
    return pa.array(values, kind)


def _first_lines(text: str) -> str:
    return text.split("\n\nJVM stacktrace")[0].split("\n== SQL")[0].strip()


def ask_duckdb(sql: str, target: str, limit: int | None = None) -> pa.Table:
    import duckdb

    tables = tables_of(target)
    connection = duckdb.connect(":memory:")
    try:
        connection.execute("SET TimeZone = 'UTC'")
        # A query reads the dataset and no other file.
        dataset = os.path.abspath(target).replace("'", "''")
        connection.execute(f"SET allowed_directories = ['{dataset}']")
        connection.execute("SET enable_external_access = false")
        connection.execute("SET lock_configuration = true")
        statements = connection.extract_statements(sql)
        if len(statements) != 1:
            raise FleetError(f"expected one query, found {len(statements)} statements")
        if statements[0].type not in (duckdb.StatementType.SELECT, duckdb.StatementType.EXPLAIN):
            raise FleetError("expected a query, such as SELECT; nothing else is run")
        for table in mentioned(sql, tables):
            files = os.path.join(os.path.abspath(target), table, "*", "*.parquet").replace("'", "''")
            connection.execute(
                f"CREATE VIEW {table} AS SELECT * FROM read_parquet('{files}', hive_partitioning = true, "
                "union_by_name = true)"
            )
        answer = connection.sql(sql)
        if answer is None:
            raise FleetError("the statement has no result, expected a SELECT")
        return (answer if limit is None else answer.limit(limit)).to_arrow_table()
    except duckdb.Error as error:
        if missing := re.search(r"Table with name (\w+) does not exist", str(error)):
            raise no_table(missing[1], tables) from None
        raise FleetError(str(error)) from None
    finally:
        connection.close()
