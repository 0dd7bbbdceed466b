# SPDX-License-Identifier: Apache-2.0
"""The questions over homes with two snapshots a night."""

import pathlib
import tarfile

import pytest
from pyspark.sql import SparkSession

from algdata_fleet.ask import ask_duckdb, ask_spark, questions
from conftest import load_quietly, make_homes

WITH_DEVICE = ["{snapshot}/{home}/*_re_{device}.txt", "{snapshot}/{home}/*"]


@pytest.fixture(scope="module")
def homes(tmp_path_factory: pytest.TempPathFactory) -> pathlib.Path:
    """Homes 0 to 13 of two nights, each night at 1 and at 13 o'clock. Names of score files are in
    capital letters. Three homes differ at 13 o'clock."""
    directory = tmp_path_factory.mktemp("snapshots")
    shards = make_homes(directory / "shards", "--homes", 14, "--nights", 2, "--seeds", 14)
    homes = directory / "homes"
    for night in ("2026-11-20", "2026-11-21"):
        with tarfile.open(shards / night / "fw2.4-00000.tar.gz") as archive:
            for hour in ("01", "13"):
                for member in archive.getmembers():
                    home, name = member.name.split("/")
                    if name.startswith("score_re_"):
                        name = f"score_re_{name[9:-4].upper()}.txt"
                    path = homes / f"{night}T{hour}" / home / name
                    path.parent.mkdir(parents=True, exist_ok=True)
                    path.write_bytes(archive.extractfile(member).read())  # type: ignore[union-attr]
    for home in ("home0000001", "home0000002"):
        for path in homes.glob(f"*T13/{home}/time_delay_*"):
            path.unlink()
    # Home 5 decides at 13 o'clock only, and then the device has another father.
    (homes / "2026-11-20T01/home0000005/decision.txt").unlink()
    index = homes / "2026-11-20T13/home0000005/ap_rank_index.txt"
    before = index.read_text()
    index.write_text(before.replace("020000000506 020000000502", "020000000506 020000000504"))
    assert index.read_text() != before
    return homes


@pytest.fixture(scope="module")
def twice(spark: SparkSession, homes: pathlib.Path, tmp_path_factory: pytest.TempPathFactory) -> str:
    target = tmp_path_factory.mktemp("twice")
    load_quietly(spark, homes, target, templates=WITH_DEVICE)
    return str(target)


def answers(spark: SparkSession, name: str, target: str) -> list[tuple[str, ...]]:
    sql = questions()[name].sql
    on_spark, on_duckdb = (
        [tuple(map(str, row.values())) for row in rows.to_pylist()]
        for rows in (ask_spark(spark, sql, target), ask_duckdb(sql, target))
    )
    assert on_spark == on_duckdb
    return on_spark


def test_a_decision_counts_once_for_each_snapshot(spark: SparkSession, twice: str) -> None:
    assert answers(spark, "weak-inputs", twice) == [
        ("2026-11-20", "27", "0", "2", "25", "0"),
        ("2026-11-21", "28", "0", "2", "26", "0"),
    ]


def test_a_device_has_the_delay_of_its_snapshot(spark: SparkSession, twice: str) -> None:
    assert answers(spark, "by-hop", twice) == [
        ("2026-11-20", "0", "28", "1000.0", "1000", "None", "None"),
        ("2026-11-20", "1", "110", "556.3", "148", "18.4", "116"),
        ("2026-11-20", "2", "26", "39.0", "1", "55.5", "242"),
        ("2026-11-21", "0", "28", "1000.0", "1000", "None", "None"),
        ("2026-11-21", "1", "110", "549.8", "141", "18.8", "120"),
        ("2026-11-21", "2", "26", "656.6", "432", "20.5", "59"),
    ]


def test_a_device_is_moved_away_from_its_father_in_the_same_snapshot(spark: SparkSession, twice: str) -> None:
    assert answers(spark, "moved-back", twice) == [
        ("home0000013", "020000000d06", "2026-11-20", "020000000d02", "020000000d03", "2026-11-21")
    ]


def test_a_home_has_one_weakest_backhaul_for_each_band(spark: SparkSession, twice: str) -> None:
    assert answers(spark, "weakest-backhaul", twice)[:3] == [
        ("2026-11-20", "home0000002", "0", "020000000206", "020000000202", "19", "138"),
        ("2026-11-20", "home0000006", "0", "020000000606", "020000000602", "19", "138"),
        ("2026-11-20", "home0000001", "1", "020000000105", "020000000101", "21", "432"),
    ]


def test_inputs_without_a_device_are_unknown(
    spark: SparkSession, homes: pathlib.Path, tmp_path: pathlib.Path
) -> None:
    load_quietly(spark, homes, tmp_path, templates=["{snapshot}/{home}/*"])
    assert answers(spark, "weak-inputs", str(tmp_path)) == [
        ("2026-11-20", "27", "0", "0", "0", "27"),
        ("2026-11-21", "28", "0", "0", "0", "28"),
    ]
