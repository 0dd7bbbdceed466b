# SPDX-License-Identifier: Apache-2.0
"""Partitions are replaced at once, whatever ends the program meanwhile."""

import os
import pathlib
import shutil
import signal
import threading

import pytest

from algdata_fleet import FleetError
from algdata_fleet.publish import Staging, exchange, publish

TABLES = ("ap_rank", "score", "station")
DAYS = ("day=2026-11-20", "day=2026-11-21")


def fill(directory: pathlib.Path, content: str) -> None:
    """Two files per partition, so that a mixture can be seen."""
    for table in TABLES:
        for day in DAYS:
            (directory / table / day).mkdir(parents=True)
            for name in ("part-0", "part-1"):
                (directory / table / day / name).write_text(content)


def contents(target: pathlib.Path) -> list[set[str]]:
    """Of each partition."""
    return [
        {path.read_text() for path in (target / table / day).iterdir()} for table in TABLES for day in DAYS
    ]


def publish_new(target: pathlib.Path, stop_after: int) -> None:
    """In a process of its own, which is killed after so many partitions."""
    child = os.fork()
    if child == 0:
        left = iter(range(stop_after - 1))

        def stop(_: str) -> None:
            if next(left, None) is None:
                os.kill(os.getpid(), signal.SIGKILL)

        with Staging(str(target)) as staging:
            fill(pathlib.Path(staging.partitions), "new")
            staging.publish_all(stop)
        os._exit(0)
    os.waitpid(child, 0)


@pytest.mark.parametrize("stop_after", [1, 3, 6])
def test_a_killed_load_leaves_each_partition_old_or_new(tmp_path: pathlib.Path, stop_after: int) -> None:
    fill(tmp_path, "old")
    publish_new(tmp_path, stop_after)
    assert contents(tmp_path) == [{"new"}] * stop_after + [{"old"}] * (6 - stop_after)
    publish_new(tmp_path, 99)
    assert contents(tmp_path) == [{"new"}] * 6
    assert os.listdir(tmp_path / "_staging") == ["lock"]


def test_a_partition_that_is_replaced_is_there_at_any_time(tmp_path: pathlib.Path) -> None:
    one, other = tmp_path / "one", tmp_path / "other"
    for path in (one, other):
        path.mkdir()
        (path / path.name).write_text("")
    done = threading.Event()

    def swap() -> None:
        for _ in range(2000):
            publish(str(one), str(other))
        done.set()

    thread = threading.Thread(target=swap)
    thread.start()
    seen = set()
    while not done.is_set():
        seen.add(tuple(os.listdir(other)))
    thread.join()
    assert seen <= {("one",), ("other",)}


def test_one_load_at_a_time(tmp_path: pathlib.Path) -> None:
    with (
        Staging(str(tmp_path)) as first,
        pytest.raises(FleetError, match="another load is writing to it"),
        Staging(str(tmp_path)),
    ):
        pass
    assert not os.path.exists(first.run)


def test_what_a_killed_load_has_staged_is_removed(tmp_path: pathlib.Path) -> None:
    (tmp_path / "_staging/abc/shards/score").mkdir(parents=True)
    with Staging(str(tmp_path)) as staging:
        assert sorted(os.listdir(tmp_path / "_staging")) == sorted(["lock", os.path.basename(staging.run)])
    assert os.listdir(tmp_path / "_staging") == ["lock"]


def test_a_file_system_that_cannot_exchange_ends_a_load_at_its_start(
    tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.setattr("algdata_fleet.publish.RENAME_EXCHANGE", 1 << 20)  # unknown, as on NFS
    with (
        pytest.raises(FleetError, match="cannot replace it: Invalid argument; expected a file system"),
        Staging(str(tmp_path)),
    ):
        pytest.fail("it has started")
    assert os.listdir(tmp_path / "_staging") == ["lock"]
    monkeypatch.undo()
    with Staging(str(tmp_path)):
        pass


def test_a_partition_that_cannot_be_replaced_tells_how_far_the_load_came(tmp_path: pathlib.Path) -> None:
    fill(tmp_path, "old")
    shutil.rmtree(tmp_path / "score/day=2026-11-20")
    (tmp_path / "score/day=2026-11-20").write_text("a file in the way")
    why = "score/day=2026-11-20: Not a directory; 2 of 6 partitions were replaced before, so load again"
    with pytest.raises(FleetError, match=f"^{why}$"), Staging(str(tmp_path)) as staging:
        fill(pathlib.Path(staging.partitions), "new")
        staging.publish_all()
    assert [(tmp_path / table / DAYS[1] / "part-0").read_text() for table in TABLES] == ["new", "old", "old"]


def test_a_file_system_that_cannot_exchange_is_named(tmp_path: pathlib.Path) -> None:
    with pytest.raises(FleetError, match="cannot replace it: No such file or directory"):
        exchange(str(tmp_path / "a"), str(tmp_path / "b"))
