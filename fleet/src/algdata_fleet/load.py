# SPDX-License-Identifier: Apache-2.0
"""`algdata-fleet load`: from shards to a dataset.

1. The driver lists the shards; each becomes a task.
2. A task runs algdata on its shard and stages the rows as Parquet (shardload.py).
3. Spark sorts the rows of each table by home and writes its partitions, still staged.
4. The rows in them are counted by shard and compared with what the tasks have read.
5. Each partition takes the place of the old one (publish.py).
"""

import dataclasses
import datetime
import functools
import os
import shutil
from collections import Counter
from collections.abc import Callable
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass, field

import pyarrow as pa
import pyarrow.parquet as pq
from py4j.protocol import Py4JError
from pyspark.errors import PySparkException
from pyspark.sql import DataFrame, SparkSession
from pyspark.sql import functions as f

from algdata_fleet import FleetError
from algdata_fleet.formats import read_kinds, schemas
from algdata_fleet.publish import Staging
from algdata_fleet.shardload import Job, Report, load_parts, load_shard
from algdata_fleet.shards import HOMES_PER_SHARD, Found, Shard, find_shards
from algdata_fleet.spark import reason_of, spark_schema
from algdata_fleet.staging import file_of
from algdata_fleet.templates import Templates
from algdata_fleet.tool import Limits

FILE_BYTES = 128 << 20  # of staged rows in one Parquet file of the dataset, about
JOBS = 4  # tables that are written at a time
NO_DAY = "__HIVE_DEFAULT_PARTITION__"


@dataclass(frozen=True)
class Request:
    source: str
    target: str
    templates: list[str]
    days: tuple[datetime.date, ...] = ()  # of --day
    algdata: str = "algdata"
    limits: Limits = field(default_factory=Limits)
    homes_per_shard: int = HOMES_PER_SHARD


@dataclass
class Summary:
    reports: list[Report]
    partitions: int = 0
    days: list[datetime.date] = field(default_factory=list)  # that were replaced
    kept: list[datetime.date] = field(default_factory=list)  # days whose old partitions stay

    def files(self, *statuses: str) -> int:
        return sum(
            count for report in self.reports for status, count in report.files.items() if status in statuses
        )

    @property
    def records(self) -> int:
        return sum(report.records for report in self.reports)

    @property
    def quarantined(self) -> list[Report]:
        return [report for report in self.reports if report.quarantined]


@dataclass(frozen=True)
class Plan:
    """What is known before anything is read: all that can be wrong with the request is found here."""

    request: Request
    templates: Templates
    kinds: str
    tables: dict[str, pa.Schema]
    found: Found


def prepare(request: Request) -> Plan:
    templates = Templates(request.templates, request.days[0] if len(request.days) == 1 else None)
    kinds, text = read_kinds(request.algdata)
    tables = schemas(kinds, templates.columns)
    inside = os.path.join(os.path.realpath(request.target), "")
    if inside.startswith(os.path.join(os.path.realpath(request.source), "")):
        raise FleetError(
            f"{request.target}: it is in {request.source}; expected a directory outside of the source"
        )
    found = find_shards(os.path.abspath(request.source), templates, request.homes_per_shard)
    return Plan(request, templates, text, tables, found)


def load(spark: SparkSession, plan: Plan) -> Summary:
    try:
        return _load(spark, plan)
    except (Py4JError, PySparkException) as error:
        raise FleetError(f"the load has failed, and nothing was changed: {reason_of(error)}") from None


def _load(spark: SparkSession, plan: Plan) -> Summary:
    request = plan.request
    with Staging(os.path.abspath(request.target)) as staging:
        source = os.path.abspath(request.source)
        job = Job(
            source,
            staging.shards,
            plan.templates,
            request.algdata,
            plan.kinds,
            request.limits,
            frozenset(plan.found.days | set(request.days)),
        )
        summary = Summary(_on_executors(spark, lambda shard: load_parts(job, shard), plan.found.shards))
        _quarantine_repeated(spark, job, plan.tables["file"], summary)
        _accept(staging, summary)
        _write_partitions(spark, staging, plan.tables)
        _require_all_rows(spark, staging, plan.tables, summary)
        days = plan.found.days | _days(summary)
        _fill(staging, plan.tables, days)
        summary.kept = [day for day in _lost_days(summary) if _keep(staging, f"day={day}")]
        summary.days = sorted(days - set(summary.kept))
        summary.partitions = staging.publish_all()
    return summary


def _on_executors(
    spark: SparkSession, task: Callable[[Shard], list[Report]], shards: list[Shard]
) -> list[Report]:
    if not shards:
        return []
    reports = spark.sparkContext.parallelize(shards, len(shards)).flatMap(task).collect()
    return sorted(reports, key=lambda report: report.shard.number)


def _quarantine_repeated(spark: SparkSession, job: Job, schema: pa.Schema, summary: Summary) -> None:
    """A shard with a file of a home that an earlier shard has too, such as a copy, would double its rows."""
    shards = {report.shard.name: report.shard for report in summary.reports}
    repeated: dict[str, Shard] = {}
    found = [
        (sorted((shards[name] for name in names), key=lambda shard: shard.number), day, home)
        for names, day, home in _repeated_homes(spark, job, schema, summary)
    ]
    for among, day, home in sorted(found, key=lambda item: [shard.number for shard in item[0]]):
        left = [shard for shard in among if shard.name not in repeated]
        for shard in left[1:]:
            reason = f"it repeats files of {left[0].name}, such as those of {home} of {day}"
            repeated[shard.name] = dataclasses.replace(shard, refused=reason)
    reports = _on_executors(spark, lambda shard: [load_shard(job, shard)], list(repeated.values()))
    again = {report.shard.name: report for report in reports}
    summary.reports = [again.get(report.shard.name, report) for report in summary.reports]


def _repeated_homes(
    spark: SparkSession, job: Job, schema: pa.Schema, summary: Summary
) -> list[tuple[list[str], datetime.date, str]]:
    """The sets of shards that have the same file of a home, each with an example."""
    paths = [
        os.path.join(job.staging, "file", file_of(report.shard.number, report.attempt))
        for report in summary.reports
        if "file" in {table for table, _ in report.rows}
    ]
    if not paths:
        return []
    home = f.struct("day", "home", "snapshot").alias("of")
    name = f.struct("device", f.substring_index("_path", "/", -1)).alias("name")
    files = spark.read.schema(spark_schema(schema)).parquet(*paths).where("status = 'loaded'")
    files = files.select(home, name, "_shard")
    # Few homes are in several shards, and only their files are compared.
    several = files.groupBy("of").agg(f.min("_shard").alias("a"), f.max("_shard").alias("b")).where("a < b")
    same = (
        files.join(several, "of", "left_semi").groupBy("of", "name").agg(f.collect_set("_shard").alias("in"))
    )
    examples = (
        same.where(f.size("in") > 1).groupBy(f.sort_array("in").alias("in")).agg(f.min("of").alias("of"))
    )
    return [(row["in"], row["of"]["day"], row["of"]["home"]) for row in examples.collect()]


def _days(summary: Summary) -> set[datetime.date]:
    texts = {day for report in summary.reports for _, day in report.rows if day != "None"}
    return {datetime.date.fromisoformat(day) for day in texts}


def _lost_days(summary: Summary) -> list[datetime.date]:
    """Days of which nothing could be read."""
    whole = Summary(
        [report for report in summary.reports if not report.quarantined and not report.shard.loose]
    )
    read = _days(whole) | {report.shard.day for report in whole.reports}
    return sorted({day for report in summary.quarantined if (day := report.shard.day)} - read)


def _keep(staging: Staging, day: str) -> bool:
    """Lets the old partitions of a day stay, except for the reasons; false if there are none."""
    tables = [
        table
        for table in os.listdir(staging.partitions)
        if table != "quarantine" and os.path.isdir(os.path.join(staging.target, table, day))
    ]
    for table in tables:
        shutil.rmtree(os.path.join(staging.partitions, table, day))
    return bool(tables)


def _accept(staging: Staging, summary: Summary) -> None:
    """Moves the files of the attempts that have reported; others are of executors that were lost."""
    for report in summary.reports:
        name = file_of(report.shard.number, report.attempt)
        for table in {table for table, _ in report.rows}:
            os.makedirs(os.path.join(staging.accepted, table), exist_ok=True)
            os.rename(os.path.join(staging.shards, table, name), os.path.join(staging.accepted, table, name))


def _staged(staging: Staging) -> list[str]:
    return sorted(os.listdir(staging.accepted)) if os.path.isdir(staging.accepted) else []


def _write_partitions(spark: SparkSession, staging: Staging, tables: dict[str, pa.Schema]) -> None:
    """Several tables at a time, because most are small."""

    def write(table: str) -> None:
        directory = os.path.join(staging.accepted, table)
        size = sum(entry.stat().st_size for entry in os.scandir(directory))
        rows = spark.read.schema(spark_schema(tables[table])).parquet(directory)
        _sorted(rows, size).write.partitionBy("day").parquet(os.path.join(staging.partitions, table))

    with ThreadPoolExecutor(JOBS) as pool:
        list(pool.map(write, _staged(staging)))


def _sorted(rows: DataFrame, size: int) -> DataFrame:
    order = [name for name in ("day", "home", "_path", "_record") if name in rows.columns]
    files = size // FILE_BYTES + 1
    parts = rows.coalesce(1) if files == 1 else rows.repartitionByRange(files, *order[:2])
    return parts.sortWithinPartitions(*order)


def _places_of(spark: SparkSession, staging: Staging, table: str, schema: pa.Schema) -> DataFrame:
    """Shard, table and day of each row that was written."""
    path = os.path.join(staging.partitions, table)
    rows = spark.read.schema(spark_schema(schema)).parquet(path)
    return rows.select("_shard", f.lit(table).alias("table"), f.col("day").cast("string"))


def _require_all_rows(
    spark: SparkSession, staging: Staging, tables: dict[str, pa.Schema], summary: Summary
) -> None:
    """What was written, read back, is what the shards had."""
    expected: Counter[tuple[str, str, str]] = Counter()
    for report in summary.reports:
        for (table, day), count in report.rows.items():
            expected[report.shard.name, table, day] += count
    written: Counter[tuple[str, str, str]] = Counter()
    if found := [_places_of(spark, staging, table, tables[table]) for table in _staged(staging)]:
        rows = functools.reduce(DataFrame.union, found)
        for shard, table, day, count in rows.groupBy("_shard", "table", "day").count().collect():
            written[shard, table, str(day)] = count
    if written != expected:
        shard, table, day = min(key for key in written | expected if written[key] != expected[key])
        raise FleetError(
            f"{shard}: {written[shard, table, day]} rows of {table} of {day} were written, expected "
            f"{expected[shard, table, day]}; nothing was changed"
        )


def _fill(staging: Staging, tables: dict[str, pa.Schema], days: set[datetime.date]) -> None:
    """A table without rows of a day gets an empty partition, so that the day's old one is replaced."""
    for table, schema in tables.items():
        partitions = [f"day={day}" for day in sorted(days)]
        if table in ("file", "quarantine"):  # rows without a day are those of the last load
            partitions.append(f"day={NO_DAY}")
        for partition in partitions:
            directory = os.path.join(staging.partitions, table, partition)
            if not os.path.isdir(directory):
                os.makedirs(directory)
                without_day = schema.remove(schema.get_field_index("day"))
                pq.write_table(without_day.empty_table(), os.path.join(directory, "part-empty.parquet"))
