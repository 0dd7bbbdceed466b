# SPDX-License-Identifier: Apache-2.0
"""Loads on this machine: what is in the dataset, and that it stays so."""

import datetime
import gzip
import io
import pathlib
import re
import shutil
import tarfile

import duckdb
import pytest
from pyspark.sql import SparkSession

import algdata_fleet.load
import algdata_fleet.publish
from algdata_fleet import FleetError
from algdata_fleet.ask import ask_duckdb, ask_spark, questions
from algdata_fleet.load import Summary
from algdata_fleet.publish import Staging, publish
from conftest import ALGDATA, load_quietly
from test_shards import HOSTILE_HOMES, write_hostile_tar

Dataset = tuple[pathlib.Path, Summary]
RANK = b"0a4e00000001 000000000000 0\n0A4E00000002 000000000000 1\n"


def rows(target: pathlib.Path, sql: str) -> list[tuple[object, ...]]:
    return [tuple(row.values()) for row in ask_duckdb(sql, str(target)).to_pylist()]


def write_tar(path: pathlib.Path, members: dict[str, bytes]) -> None:
    path.parent.mkdir(parents=True, exist_ok=True)
    with tarfile.open(path, "w:gz") as archive:
        for name, content in members.items():
            member = tarfile.TarInfo(name)
            member.size = len(content)
            archive.addfile(member, io.BytesIO(content))


def everything(target: pathlib.Path) -> dict[str, list[str]]:
    """All rows of all tables, in an order of their own."""
    result = {}
    for table in sorted(path.name for path in target.iterdir() if not path.name.startswith("_")):
        found = duckdb.sql(
            f"SELECT * FROM read_parquet('{target}/{table}/*/*.parquet', hive_partitioning=true)"
        )
        result[table] = sorted(map(str, found.fetchall()))
    return result


def test_every_file_is_loaded_or_refused(dataset: Dataset) -> None:
    target, summary = dataset
    assert [report.shard.name for report in summary.quarantined] == ["2026-11-22/fw2.5-99999.tar.gz"]
    assert summary.files("loaded", "empty", "other", "refused") == 200 * 3 * 33
    assert summary.files("refused") == 30
    counted = rows(target, "SELECT status, count(*) FROM file GROUP BY 1 ORDER BY 1")
    assert counted == [("empty", 1285), ("loaded", 18485), ("refused", 30)]
    assert rows(target, "SELECT sum(records) FROM file")[0][0] == summary.records


def test_a_truncated_shard_is_quarantined_whole(dataset: Dataset) -> None:
    target, _ = dataset
    ((day, shard, reason),) = rows(target, "SELECT CAST(day AS VARCHAR), _shard, reason FROM quarantine")
    assert (day, shard) == ("2026-11-22", "2026-11-22/fw2.5-99999.tar.gz")
    assert str(reason).startswith("cannot read 2026-11-22/fw2.5-99999.tar.gz after home")
    assert str(reason).endswith(": its gzip data is truncated")
    assert rows(target, "SELECT count(*) FROM file WHERE _shard LIKE '%99999%'") == [(0,)]


def test_a_record_has_its_path_and_the_types_of_the_formats(dataset: Dataset) -> None:
    target, _ = dataset
    columns = ask_duckdb("SELECT * FROM score LIMIT 1", str(target)).schema
    assert [(field.name, str(field.type)) for field in columns] == [
        ("home", "string"),
        ("snapshot", "string"),
        ("device", "string"),
        ("firmware", "string"),
        ("_shard", "string"),
        ("_path", "string"),
        ("_record", "int32"),
        ("fatherMAC", "string"),
        ("apRank", "int16"),
        ("hopsFactor", "double"),
        ("timeDelayTestCnt", "int16"),
        ("timeDelayAverage", "int32"),
        ("timeNormalization", "double"),
        ("thrputPredict", "int32"),
        ("day", "date32[day]"),
    ]
    found = rows(
        target,
        "SELECT home, device, firmware, _path, fatherMAC, hopsFactor FROM score WHERE "
        "home = 'home0000002' AND day = DATE '2026-11-20' ORDER BY device, _record LIMIT 1",
    )
    assert found == [
        (
            "home0000002",
            "020000000202",
            "fw2.4",
            "2026-11-20/fw2.4-00000.tar.gz/home0000002/score_re_020000000202.txt",
            "020000000201",
            1.0,
        )
    ]


def test_elements_and_entries_join_their_record(dataset: Dataset) -> None:
    target, _ = dataset
    assert rows(target, "SELECT count(*), count(DISTINCT band) FROM score_band") == [
        (rows(target, "SELECT 5 * count(*) FROM score")[0][0], 5)
    ]
    wrong = rows(
        target,
        "SELECT count(*) FROM score_band b LEFT JOIN score s USING (_path, _record) "
        "WHERE s.fatherMAC IS NULL OR s.fatherMAC <> b.fatherMAC",
    )
    assert wrong == [(0,)]
    assert rows(target, "SELECT count(*) FROM rank_entry") == rows(
        target, "SELECT sum(cnt) FROM ap_rank_index"
    )


def test_rows_are_sorted_by_home(dataset: Dataset) -> None:
    target, _ = dataset
    for path in target.glob("*/day=*/*.parquet"):
        names = duckdb.sql(f"SELECT home FROM read_parquet('{path}')").fetchall()
        assert names == sorted(names), path


@pytest.mark.parametrize("name", list(questions()))
def test_a_question_has_the_same_answer_on_both_engines(
    name: str, spark: SparkSession, dataset: Dataset
) -> None:
    sql = questions()[name].sql
    on_spark, on_duckdb = ask_spark(spark, sql, str(dataset[0])), ask_duckdb(sql, str(dataset[0]))
    assert on_spark.column_names == on_duckdb.column_names
    assert on_spark.num_rows > 0
    assert [list(map(str, row.values())) for row in on_spark.to_pylist()] == [
        list(map(str, row.values())) for row in on_duckdb.to_pylist()
    ]


def test_the_same_nights_again_give_the_same_dataset(
    spark: SparkSession, shards: pathlib.Path, dataset: Dataset, tmp_path: pathlib.Path
) -> None:
    target = tmp_path / "again"
    shutil.copytree(dataset[0], target)
    load_quietly(spark, shards, target)
    assert everything(target) == everything(dataset[0])


def test_a_night_replaces_its_own_partitions_only(
    spark: SparkSession, shards: pathlib.Path, dataset: Dataset, tmp_path: pathlib.Path
) -> None:
    source, target = tmp_path / "source", tmp_path / "target"
    shutil.copytree(dataset[0], target)
    write_tar(source / "2026-11-21/fw3-1.tar.gz", {"h1/ap_rank.txt": RANK})
    load_quietly(spark, source, target)
    assert rows(
        target, "SELECT CAST(day AS VARCHAR), count(DISTINCT home) FROM ap_rank GROUP BY 1 ORDER BY 1"
    ) == [("2026-11-20", 200), ("2026-11-21", 1), ("2026-11-22", 200)]
    assert rows(target, "SELECT count(*) FROM score WHERE day = DATE '2026-11-21'") == [(0,)]


def test_a_night_that_cannot_be_read_keeps_its_partitions(
    spark: SparkSession, tmp_path: pathlib.Path
) -> None:
    """The other night of the load is replaced, and the reasons are those of the last load."""
    source, target = tmp_path / "source", tmp_path / "target"
    first, second = source / "2026-11-20/fw1.tar.gz", source / "2026-11-21/fw1.tar.gz"
    write_tar(first, {"h1/ap_rank.txt": RANK})
    write_tar(second, {"h1/ap_rank.txt": RANK})
    assert load_quietly(spark, source, target, templates=["{day}/*/{home}/*"]).kept == []
    first.write_bytes(first.read_bytes()[:100])
    (source / "2026-11-20/README").write_text("a file that is outside of the directories of homes\n")
    write_tar(second, {"h2/ap_rank.txt": RANK})
    summary = load_quietly(spark, source, target, templates=["{day}/*/{home}/*"])
    sql = "SELECT CAST(day AS VARCHAR), home, status FROM file ORDER BY 1, 2"
    assert rows(target, sql) == [("2026-11-20", "h1", "loaded"), ("2026-11-21", "h2", "loaded")]
    assert summary.kept == [datetime.date(2026, 11, 20)]
    assert rows(target, "SELECT CAST(day AS VARCHAR), _shard FROM quarantine") == [
        ("2026-11-20", "2026-11-20/fw1.tar.gz")
    ]


def test_a_first_night_that_cannot_be_read_has_empty_tables(
    spark: SparkSession, tmp_path: pathlib.Path
) -> None:
    source, target = tmp_path / "source", tmp_path / "target"
    (source / "2026-11-20").mkdir(parents=True)
    (source / "2026-11-20/fw1.tar.gz").write_bytes(b"")
    assert load_quietly(spark, source, target, templates=["{day}/*/{home}/*"]).kept == []
    assert rows(target, "SELECT (SELECT count(*) FROM score), (SELECT count(*) FROM quarantine)") == [(0, 1)]


def test_a_late_file_replaces_no_other_night(spark: SparkSession, tmp_path: pathlib.Path) -> None:
    """The paths in a shard state days too. --day names those that are meant."""
    source, target = tmp_path / "source", tmp_path / "target"
    templates = ["{batch}/{home}/{snapshot}/*"]
    first, second = datetime.date(2026, 11, 20), datetime.date(2026, 11, 21)
    shard = source / "batch.tar.gz"
    night = {f"h{home}/2026-11-20T03/ap_rank.txt": RANK for home in (1, 2)}
    write_tar(shard, night)
    load_quietly(spark, source, target, templates=templates, days=(first,))
    write_tar(shard, {"h1/2026-11-20T23/ap_rank.txt": RANK, "h1/2026-11-21T03/ap_rank.txt": RANK})
    summary = load_quietly(spark, source, target, templates=templates, days=(second,))
    reason = "it is of 2026-11-20, which neither a path of the source nor --day states"
    assert [report.refused for report in summary.reports] == [
        [("batch.tar.gz/h1/2026-11-20T23/ap_rank.txt", reason)]
    ]
    assert summary.days == [second]
    sql = "SELECT home, snapshot, count(*) FROM ap_rank GROUP BY ALL ORDER BY ALL"
    assert rows(target, sql) == [
        ("h1", "2026-11-20T03", 2),
        ("h1", "2026-11-21T03", 2),
        ("h2", "2026-11-20T03", 2),
    ]
    assert load_quietly(spark, source, target, templates=templates, days=(first, second)).days == [
        first,
        second,
    ]
    assert rows(target, sql) == [("h1", "2026-11-20T23", 2), ("h1", "2026-11-21T03", 2)]


def test_rows_without_a_day_are_those_of_the_last_load(spark: SparkSession, tmp_path: pathlib.Path) -> None:
    source, target = tmp_path / "source", tmp_path / "target"
    templates = ["{home}/{snapshot}/*"]
    write_tar(source / "a.tar.gz", {"2026-11-20/x.txt": RANK, "stray/x.txt": RANK})
    (source / "b.tar").write_bytes(b"")
    load_quietly(spark, source, target, templates=templates)
    sql = "SELECT _path, reason FROM {} WHERE day IS NULL"
    no_date = "its path has no date since 2000, expected YYYY-MM-DD as {day} or at the start of {snapshot}"
    other = "it is of 2026-11-20, which neither a path of the source nor --day states"
    assert rows(target, sql.format("file")) == [
        ("a.tar.gz/2026-11-20/x.txt", other),
        ("a.tar.gz/stray/x.txt", no_date),
    ]
    assert rows(target, sql.format("quarantine")) == [
        ("b.tar", "cannot read b.tar: it is empty, expected an archive")
    ]
    write_tar(source / "a.tar.gz", {"stray/y.txt": RANK})
    (source / "b.tar").unlink()
    load_quietly(spark, source, target, templates=templates)
    assert rows(target, sql.format("file")) == [("a.tar.gz/stray/y.txt", no_date)]
    (source / "a.tar.gz").write_bytes(b"")
    load_quietly(spark, source, target, templates=templates)
    assert rows(target, sql.format("file")) == []


def test_an_empty_night_is_a_night_without_homes(
    spark: SparkSession, dataset: Dataset, tmp_path: pathlib.Path
) -> None:
    source, target = tmp_path / "source", tmp_path / "target"
    shutil.copytree(dataset[0], target)
    (source / "2026-11-21").mkdir(parents=True)
    summary = load_quietly(spark, source, target)
    assert (summary.files("loaded"), summary.reports) == (0, [])
    with_rows = {table for table, of_table in everything(dataset[0]).items() if of_table} - {"quarantine"}
    assert len(with_rows) > 20
    for table in with_rows:
        days = rows(target, f"SELECT DISTINCT CAST(day AS VARCHAR) FROM {table} ORDER BY 1")
        assert days == [("2026-11-20",), ("2026-11-22",)], table


def test_a_clock_that_was_not_set_refuses_its_files_only(spark: SparkSession, tmp_path: pathlib.Path) -> None:
    source, target = tmp_path / "source", tmp_path / "target"
    for number, day in enumerate(("2026-11-20", "1970-01-01", "0001-01-01")):
        write_tar(source / day / "s.tar.gz", {f"h{number}/ap_rank.txt": RANK})
    load_quietly(spark, source, target, templates=["{day}/*/{home}/*"])
    assert rows(target, "SELECT home, count(*) FROM ap_rank GROUP BY 1") == [("h0", 2)]
    reason = "its path has no date since 2000, expected YYYY-MM-DD as {day} or at the start of {snapshot}"
    assert rows(target, "SELECT _path, reason FROM file WHERE status = 'refused' ORDER BY 1") == [
        ("0001-01-01/s.tar.gz/h2/ap_rank.txt", reason),
        ("1970-01-01/s.tar.gz/h1/ap_rank.txt", reason),
    ]


def test_homes_as_directories_are_loaded_in_groups(spark: SparkSession, tmp_path: pathlib.Path) -> None:
    source, target = tmp_path / "source", tmp_path / "target"
    for home in ("h1", "h2", "-rf", "h 4"):
        directory = source / "2026-11-20/fw1-x" / home
        directory.mkdir(parents=True)
        (directory / "ap_rank.txt").write_bytes(RANK)
    (source / "2026-11-20/README").write_text("no record file\n")
    (source / "2026-11-20/fw1-x/h 4/link.txt").symlink_to(source / "2026-11-20/fw1-x/h2/ap_rank.txt")
    (source / "2026-11-20/fw1-x/h1/notes.txt").write_text("hello\n")
    summary = load_quietly(spark, source, target, homes_per_shard=3)
    assert [report.shard.name for report in summary.reports] == [
        "2026-11-20/fw1-x/-rf",
        "2026-11-20/fw1-x/h 4",
        "2026-11-20/fw1-x/h1",
        "2026-11-20/fw1-x/h2",
        "2026-11-20/",
    ]
    assert rows(target, "SELECT home, deviceMAC FROM ap_rank WHERE apRank = 1 ORDER BY home") == [
        (home, "0a4e00000002") for home in ("-rf", "h1", "h2")
    ]
    assert rows(target, "SELECT _path, status, reason FROM file WHERE status <> 'loaded' ORDER BY 1") == [
        ("2026-11-20/README", "refused", "it is outside of the directories of homes"),
        ("2026-11-20/fw1-x/h1/notes.txt", "other", None),
    ]
    assert rows(target, "SELECT _shard FROM quarantine") == [("2026-11-20/fw1-x/h 4",)]
    assert rows(target, "SELECT DISTINCT home FROM tree ORDER BY 1") == [("-rf",), ("h1",), ("h2",)]


def test_a_copy_of_a_shard_is_quarantined(spark: SparkSession, tmp_path: pathlib.Path) -> None:
    """A file that was decompressed, and a part that was extracted. The first by name is kept."""
    source, target = tmp_path / "source", tmp_path / "target"
    day = source / "2026-11-20"
    write_tar(day / "fw1-b.tar.gz", {"h1/ap_rank.txt": RANK, "h2/ap_rank.txt": RANK})
    (day / "fw1-a.tar").write_bytes(gzip.decompress((day / "fw1-b.tar.gz").read_bytes()))
    (day / "fw1-c/h2").mkdir(parents=True)
    (day / "fw1-c/h2/ap_rank.txt").write_bytes(RANK)
    (day / "fw1-c/h3").mkdir()
    (day / "fw1-c/h3/ap_rank.txt").write_bytes(RANK)
    summary = load_quietly(spark, source, target)
    assert rows(target, "SELECT home, count(*) FROM ap_rank GROUP BY 1 ORDER BY 1") == [("h1", 2), ("h2", 2)]
    why = "it repeats files of 2026-11-20/fw1-a.tar, such as those of"
    quarantined = [
        ("2026-11-20/fw1-b.tar.gz", f"{why} h1 of 2026-11-20"),
        ("2026-11-20/fw1-c/h2..h3", f"{why} h2 of 2026-11-20"),
    ]
    assert rows(target, "SELECT _shard, reason FROM quarantine ORDER BY 1") == quarantined
    assert [(report.shard.name, report.quarantined) for report in summary.quarantined] == quarantined
    assert (summary.files("loaded"), summary.records) == (2, 4)


def test_shards_that_repeat_different_homes_of_each_other(
    spark: SparkSession, tmp_path: pathlib.Path
) -> None:
    """The second and the third repeat the first, and each other in another home."""
    source, target = tmp_path / "source", tmp_path / "target"
    write_tar(source / "2026-11-20/fw1-a.tar.gz", {"h1/ap_rank.txt": RANK})
    for name in "bc":
        members = {"h1/ap_rank.txt": RANK, "h2/ap_rank.txt": RANK}
        write_tar(source / f"2026-11-20/fw1-{name}.tar.gz", members)
    load_quietly(spark, source, target)
    why = "it repeats files of 2026-11-20/fw1-a.tar.gz, such as those of h1 of 2026-11-20"
    assert rows(target, "SELECT _shard, reason FROM quarantine ORDER BY 1") == [
        ("2026-11-20/fw1-b.tar.gz", why),
        ("2026-11-20/fw1-c.tar.gz", why),
    ]
    assert rows(target, "SELECT home, count(*) FROM ap_rank GROUP BY 1") == [("h1", 2)]


def test_a_home_can_be_in_several_shards(spark: SparkSession, tmp_path: pathlib.Path) -> None:
    """Other files, and the same name in another snapshot or night."""
    source, target = tmp_path / "source", tmp_path / "target"
    shards = {
        "2026-11-20/1.tar.gz": "0300/h1/ap_rank.txt",
        "2026-11-20/2.tar.gz": "0300/h1/ap_rank_2.txt",
        "2026-11-20/3.tar.gz": "0400/h1/ap_rank.txt",
        "2026-11-21/1.tar.gz": "0300/h1/ap_rank.txt",
    }
    for shard, name in shards.items():
        write_tar(source / shard, {name: RANK})
    summary = load_quietly(spark, source, target, templates=["{day}/*/{snapshot}/{home}/*"])
    assert (summary.quarantined, summary.files("loaded")) == ([], 4)


def newer_algdata(newer: pathlib.Path) -> pathlib.Path:
    """One whose ap-rank has one more field, and one that a table of parts gets."""
    newer.write_text(f"""#!/usr/bin/env python3
import json, subprocess, sys
done = subprocess.run(["{ALGDATA}", *sys.argv[1:]], stdout=subprocess.PIPE, text=True)
if sys.argv[1] == "kinds":
    rows = json.loads(done.stdout)
    like = next(row for row in rows if row["kind"] == "ap-rank" and row["field"] == "apRank")
    rows.append({{**like, "field": "uptime", "type": "uint32"}})
    more = {{"field": "load", "type": "uint8", "count": 2, "table": "ap_rank_core", "index": "core"}}
    rows.append({{**like, **more}})
    print(json.dumps(rows))
else:
    for line in done.stdout.splitlines():
        row = json.loads(line)
        if row.get("kind") == "ap-rank" and "apRank" in row:
            row.update(uptime=4000000000, load=[1, 2])
        print(json.dumps(row, separators=(",", ":")))
sys.exit(done.returncode)
""")
    newer.chmod(0o755)
    return newer


def test_a_new_field_needs_no_change(spark: SparkSession, tmp_path: pathlib.Path) -> None:
    newer = newer_algdata(tmp_path / "algdata")
    source, target = tmp_path / "source", tmp_path / "target"
    write_tar(source / "2026-11-20/fw1-1.tar.gz", {"h1/ap_rank.txt": RANK})
    load_quietly(spark, source, target)
    write_tar(source / "2026-11-21/fw2-1.tar.gz", {"h1/ap_rank.txt": RANK})
    shutil.rmtree(source / "2026-11-20")
    load_quietly(spark, source, target, algdata=str(newer))
    sql = "SELECT CAST(day AS VARCHAR) AS day, uptime, count(*) FROM ap_rank GROUP BY 1, 2 ORDER BY 1"
    expected = [("2026-11-20", None, 2), ("2026-11-21", 4000000000, 2)]
    assert rows(target, sql) == expected
    on_spark = ask_spark(spark, sql.replace("VARCHAR", "STRING"), str(target))
    assert [tuple(row.values()) for row in on_spark.to_pylist()] == expected
    assert rows(target, "SELECT deviceMAC, core, load FROM ap_rank_core ORDER BY 1, 2 LIMIT 2") == [
        ("0a4e00000001", 0, 1),
        ("0a4e00000001", 1, 2),
    ]


def test_rows_that_are_lost_while_writing_fail_the_load(
    spark: SparkSession, dataset: Dataset, tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    source, target = tmp_path / "source", tmp_path / "target"
    shutil.copytree(dataset[0], target)
    write_tar(source / "2026-11-21/fw1-1.tar.gz", {"h1/ap_rank.txt": RANK})
    write_tar(source / "2026-11-21/fw1-2.tar.gz", {"h2/ap_rank.txt": RANK})
    whole = algdata_fleet.load._sorted
    monkeypatch.setattr(
        algdata_fleet.load,
        "_sorted",
        lambda rows, size: (
            whole(rows, size).where("NOT (home = 'h2' AND _path LIKE '%rank%' AND apRank = 1)")
            if "ethFatherMAC" in rows.columns
            else whole(rows, size)
        ),
    )
    why = "2026-11-21/fw1-2.tar.gz: 1 rows of ap_rank of 2026-11-21 were written, expected 2; nothing"
    with pytest.raises(FleetError, match=re.escape(why)):
        load_quietly(spark, source, target)
    assert everything(target) == everything(dataset[0])


def test_hostile_names_are_values_on_both_engines(spark: SparkSession, tmp_path: pathlib.Path) -> None:
    source, target = tmp_path / "source", tmp_path / "target"
    write_hostile_tar(source / "2026-11-20/s.tar.gz")
    summary = load_quietly(spark, source, target, templates=["{day}/*/{home}/*"])
    assert (summary.quarantined, summary.files("loaded"), summary.files("refused")) == ([], 6, 8)
    sql = "SELECT home, count(*) AS n FROM ap_rank GROUP BY home"
    for answer in (ask_spark(spark, sql, str(target)), ask_duckdb(sql, str(target))):
        assert {(row["home"], row["n"]) for row in answer.to_pylist()} == {
            (home, 2) for home in HOSTILE_HOMES
        }


def test_a_partition_of_several_files_is_sorted_through_all(
    spark: SparkSession, tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    source, target = tmp_path / "source", tmp_path / "target"
    for shard in range(3):
        names = [f"h{home:03}/ap_rank.txt" for home in range(shard, 300, 3)]
        write_tar(source / f"2026-11-21/fw1-{shard}.tar.gz", dict.fromkeys(names, RANK))
    monkeypatch.setattr(algdata_fleet.load, "FILE_BYTES", 5000)
    load_quietly(spark, source, target)
    files = sorted((target / "ap_rank/day=2026-11-21").glob("*.parquet"))
    homes = [duckdb.sql(f"SELECT home FROM read_parquet('{path}')").fetchall() for path in files]
    assert len([of_file for of_file in homes if of_file]) > 2
    assert [home for of_file in homes for (home,) in of_file] == [f"h{n // 2:03}" for n in range(600)]


def test_a_load_that_ends_while_it_publishes_leaves_each_partition_old_or_new(
    spark: SparkSession, tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    source, target = tmp_path / "source", tmp_path / "target"
    write_tar(source / "2026-11-21/fw1-1.tar.gz", {"h1/ap_rank.txt": RANK})
    load_quietly(spark, source, target)
    old = everything(target)
    write_tar(source / "2026-11-21/fw1-1.tar.gz", {"h2/ap_rank.txt": RANK})

    def until_ap_rank(new: str, old: str) -> None:
        publish(new, old)
        if "/ap_rank/" in old:
            raise KeyboardInterrupt

    with monkeypatch.context() as stopped, pytest.raises(KeyboardInterrupt):
        stopped.setattr(algdata_fleet.publish, "publish", until_ap_rank)
        load_quietly(spark, source, target)
    between = everything(target)
    load_quietly(spark, source, target)
    new = everything(target)
    assert between["ap_rank"] == new["ap_rank"] != old["ap_rank"]
    assert new["file"] != old["file"] == between["file"]


def test_rows_of_a_lost_executor_are_not_loaded(
    spark: SparkSession, tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    """It has finished a shard that the driver has given to another executor."""
    source, target = tmp_path / "source", tmp_path / "target"
    write_tar(source / "2026-11-21/fw1-1.tar.gz", {"h1/ap_rank.txt": RANK})
    accept = algdata_fleet.load._accept

    def late(staging: Staging, summary: Summary) -> None:
        for path in pathlib.Path(staging.shards).glob("*/*.parquet"):
            shutil.copy(path, path.with_name("000000-lost.parquet"))
        accept(staging, summary)

    monkeypatch.setattr(algdata_fleet.load, "_accept", late)
    load_quietly(spark, source, target)
    assert rows(target, "SELECT count(*) FROM ap_rank") == [(2,)]


def test_rows_that_are_doubled_while_writing_fail_the_load(
    spark: SparkSession, tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    source, target = tmp_path / "source", tmp_path / "target"
    write_tar(source / "2026-11-21/fw1-1.tar.gz", {"h1/ap_rank.txt": RANK})
    whole = algdata_fleet.load._sorted
    monkeypatch.setattr(
        algdata_fleet.load,
        "_sorted",
        lambda rows, size: (
            whole(rows.union(rows), size) if "ethFatherMAC" in rows.columns else whole(rows, size)
        ),
    )
    why = "2026-11-21/fw1-1.tar.gz: 4 rows of ap_rank of 2026-11-21 were written, expected 2; nothing"
    with pytest.raises(FleetError, match=re.escape(why)):
        load_quietly(spark, source, target)
    assert sorted(path.name for path in target.iterdir()) == ["_staging"]


def test_a_worker_with_other_formats_ends_the_load(
    spark: SparkSession, dataset: Dataset, tmp_path: pathlib.Path
) -> None:
    """The driver's algdata is replaced before the workers use it."""
    source, target = tmp_path / "source", tmp_path / "target"
    algdata = tmp_path / "algdata"
    algdata.write_text(
        f'#!/bin/sh\n[ ! -e "{tmp_path}/used" ] || echo\n>"{tmp_path}/used"\nexec {ALGDATA} "$@"\n'
    )
    algdata.chmod(0o755)
    shutil.copytree(dataset[0], target)
    write_tar(source / "2026-11-21/fw1-1.tar.gz", {"h1/ap_rank.txt": RANK})
    with pytest.raises(
        FleetError, match=r"nothing was changed: .*algdata has other formats than on the driver"
    ):
        load_quietly(spark, source, target, algdata=str(algdata))
    assert everything(target) == everything(dataset[0])
