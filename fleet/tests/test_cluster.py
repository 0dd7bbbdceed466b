# SPDX-License-Identifier: Apache-2.0
"""A master and two workers: what remains when one of them, or the driver, is killed."""

import os
import pathlib
import shutil
import signal
import subprocess
import sys
import time
from collections.abc import Iterator

import pytest

from algdata_fleet.cluster import Cluster
from conftest import ALGDATA, TEMPLATES, make_homes
from test_load import RANK, everything, newer_algdata, rows, write_tar
from test_shards import HOSTILE_HOMES, write_hostile_tar

pytestmark = pytest.mark.cluster


@pytest.fixture
def cluster() -> Iterator[Cluster]:
    with Cluster(workers=2) as cluster:
        yield cluster


@pytest.fixture(scope="module")
def many(tmp_path_factory: pytest.TempPathFactory) -> pathlib.Path:
    """Twelve shards of two homes."""
    return make_homes(tmp_path_factory.mktemp("many"), "--homes", 8, "--per-shard", 2, "--seeds", 8)


@pytest.fixture
def slow(tmp_path: pathlib.Path) -> str:
    """An algdata that takes a second more for each shard, and adds a line to `exports`."""
    path = tmp_path / "algdata"
    path.write_text(f"""#!/bin/sh
[ "$1" != export ] || {{ echo >> "{tmp_path}/exports"; sleep 1; }}
exec {ALGDATA} "$@"
""")
    path.chmod(0o755)
    return str(path)


def start_load(
    source: pathlib.Path,
    target: pathlib.Path,
    master: str,
    algdata: str = ALGDATA,
    templates: list[str] = TEMPLATES,
) -> subprocess.Popen[str]:
    paths = [argument for template in templates for argument in ("--path", template)]
    return subprocess.Popen(
        [
            *(sys.executable, "-m", "algdata_fleet", "load", str(source), str(target), *paths),
            *("--master", master, "--algdata", algdata, "--conf", "spark.ui.enabled=false"),
        ],
        env={**os.environ, "SPARK_LOCAL_IP": "127.0.0.1"},
        stdout=subprocess.PIPE,
        text=True,
        start_new_session=True,
    )


def wait_for_shards(target: pathlib.Path, count: int) -> None:
    deadline = time.monotonic() + 180
    while len(list(target.glob("_staging/*/shards/file/[0-9]*.parquet"))) < count:
        assert time.monotonic() < deadline
        time.sleep(0.05)


def finish(load: subprocess.Popen[str]) -> tuple[int, str]:
    text, _ = load.communicate(timeout=400)
    return load.returncode, text


def test_a_worker_that_is_killed_changes_nothing(
    cluster: Cluster, many: pathlib.Path, slow: str, tmp_path: pathlib.Path
) -> None:
    quiet, disturbed = tmp_path / "quiet", tmp_path / "disturbed"
    assert finish(start_load(many, quiet, "local[2]", ALGDATA))[0] == 1  # a file in UTF-16 is refused
    load = start_load(many, disturbed, cluster.master, slow)
    wait_for_shards(disturbed, 3)
    os.killpg(cluster.workers[0].pid, signal.SIGKILL)
    status, text = finish(load)
    assert (status, "12 shards, 0 quarantined" in text) == (1, True)
    assert everything(disturbed) == everything(quiet)
    assert len((tmp_path / "exports").read_text()) > 12  # a shard was loaded again


def test_a_driver_that_is_killed_leaves_the_old_partitions(
    cluster: Cluster, many: pathlib.Path, slow: str, tmp_path: pathlib.Path
) -> None:
    target = tmp_path / "target"
    first = make_homes(tmp_path / "first", "--homes", 2, "--seeds", 2)
    assert finish(start_load(first, target, "local[2]", ALGDATA))[0] == 0
    before = everything(target)
    load = start_load(many, target, cluster.master, slow)
    wait_for_shards(target, 3)
    os.kill(load.pid, signal.SIGKILL)
    load.wait()
    assert everything(target) == before
    quiet = tmp_path / "quiet"
    assert finish(start_load(many, quiet, "local[2]", ALGDATA))[0] == 1
    assert finish(start_load(many, target, cluster.master, ALGDATA))[0] == 1
    assert everything(target) == everything(quiet)
    assert os.listdir(target / "_staging") == ["lock"]


def test_a_hostile_shard_an_empty_night_and_a_new_field(cluster: Cluster, tmp_path: pathlib.Path) -> None:
    """As on one machine; one load after the other, because a load takes as long as its start."""
    source, target = tmp_path / "source", tmp_path / "target"
    templates = ["{day}/*/{home}/*"]
    write_hostile_tar(source / "2026-11-20/s.tar.gz")
    write_tar(source / "2026-11-20/cut.tar.gz", {f"h{n}/ap_rank.txt": RANK for n in range(100)})
    cut = source / "2026-11-20/cut.tar.gz"
    cut.write_bytes(cut.read_bytes()[:200])
    write_tar(source / "2026-11-21/s.tar.gz", {"h1/ap_rank.txt": RANK})
    status, text = finish(start_load(source, target, cluster.master, templates=templates))
    assert (status, "3 shards, 1 quarantined" in text) == (1, True)
    hostile = {(home, 2) for home in HOSTILE_HOMES}
    of_first = "SELECT home, count(*) FROM ap_rank WHERE day = DATE '2026-11-20' GROUP BY home"
    assert set(rows(target, of_first)) == hostile

    (source / "2026-11-21/s.tar.gz").unlink()
    shutil.rmtree(source / "2026-11-20")
    (source / "2026-11-22").mkdir()
    write_tar(source / "2026-11-22/s.tar.gz", {"h1/ap_rank.txt": RANK})
    newer = str(newer_algdata(tmp_path / "algdata"))
    status, _ = finish(start_load(source, target, cluster.master, newer, templates))
    assert status == 0
    assert set(rows(target, of_first)) == hostile
    assert rows(target, "SELECT DISTINCT day - DATE '2026-11-20', uptime FROM ap_rank ORDER BY 1") == [
        (0, None),
        (2, 4000000000),
    ]


def processes_of(groups: list[int]) -> list[str]:
    """Processes of these groups that have not ended; one that nobody has waited for is a zombie."""
    listed = subprocess.run(["ps", "-eo", "pgid=,stat=,args="], stdout=subprocess.PIPE, text=True).stdout
    lines = [line.split(maxsplit=2) for line in listed.splitlines()]
    return [line[2] for line in lines if int(line[0]) in groups and line[1][0] != "Z"]


def test_the_cluster_ends_what_it_has_started() -> None:
    with Cluster(workers=1) as cluster:
        groups = [process.pid for process in cluster.processes]
        assert len(groups) == 2
    assert processes_of(groups) == []
    assert not cluster.directory.exists()


@pytest.mark.parametrize(
    ("number", "command", "status"),
    [
        (signal.SIGINT, "echo $$; sleep 600; true", 130),
        (signal.SIGTERM, "trap '' TERM; echo $$; sleep 600; true", 143),
        (signal.SIGHUP, "echo $$; sleep 600; true", 129),
    ],
)
def test_the_cluster_ends_its_command_with_what_that_has_started(
    number: int, command: str, status: int
) -> None:
    """The signal is for the program alone, as from `kill` or a service manager."""
    running = subprocess.Popen(
        [*(sys.executable, "-m", "algdata_fleet.cluster", "--workers", "1"), "--", "sh", "-c", command],
        stdout=subprocess.PIPE,
        text=True,
    )
    assert running.stdout is not None
    assert running.stdout.readline().startswith("Spark's master is spark://127.0.0.1:")
    group = int(running.stdout.readline())
    while len(processes_of([group])) < 2:
        time.sleep(0.05)
    running.send_signal(number)
    assert running.wait(60) == status
    assert processes_of([group]) == []
