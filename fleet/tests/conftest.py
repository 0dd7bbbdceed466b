# SPDX-License-Identifier: Apache-2.0
"""What the tests share: the programs, shards of simulated homes, a Spark session, a dataset."""

import os
import pathlib
import subprocess
from collections.abc import Iterator

import pytest
from pyspark.sql import SparkSession

from algdata_fleet.load import Request, Summary, load, prepare
from algdata_fleet.spark import session

FLEET = pathlib.Path(__file__).resolve().parents[1]
BUILD = FLEET.parent / "build/demo"
ALGDATA = os.environ.get("ALGDATA", str(BUILD / "tools/algdata/algdata"))
MESH_ROUND = os.environ.get("MESH_ROUND", str(BUILD / "examples/mesh_round"))
TEMPLATES = ["{day}/{firmware}-*/{home}/*_re_{device}.txt", "{day}/{firmware}-*/{home}/*.txt"]


def make_homes(directory: pathlib.Path, *options: object) -> pathlib.Path:
    subprocess.run([FLEET / "make-homes", MESH_ROUND, directory, *map(str, options)], check=True)
    return directory


def load_quietly(spark: SparkSession, source: pathlib.Path, target: pathlib.Path, **more: object) -> Summary:
    request = {"templates": TEMPLATES, "algdata": ALGDATA, **more}
    return load(spark, prepare(Request(str(source), str(target), **request)))  # type: ignore[arg-type]


@pytest.fixture(scope="session")
def spark() -> Iterator[SparkSession]:
    os.environ["SPARK_LOCAL_IP"] = "127.0.0.1"
    with session("tests", "local[2]", ["spark.ui.enabled=false", "spark.driver.memory=1g"]) as spark:
        yield spark


@pytest.fixture(scope="session")
def shards(tmp_path_factory: pytest.TempPathFactory) -> pathlib.Path:
    """Those of scripts/fleet-demo: every fault that make-homes knows, and a truncated shard."""
    options = ("--homes", 200, "--nights", 3, "--per-shard", 50, "--cut")
    return make_homes(tmp_path_factory.mktemp("shards"), *options)


@pytest.fixture(scope="session")
def dataset(
    spark: SparkSession, shards: pathlib.Path, tmp_path_factory: pytest.TempPathFactory
) -> tuple[pathlib.Path, Summary]:
    target = tmp_path_factory.mktemp("dataset")
    return target, load_quietly(spark, shards, target)
