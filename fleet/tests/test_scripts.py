# SPDX-License-Identifier: Apache-2.0
"""The programs that make homes and measure."""

import pathlib
import subprocess
from types import ModuleType

import pytest

from conftest import FLEET, MESH_ROUND, make_homes


@pytest.fixture
def bench(tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch) -> ModuleType:
    """The program, which has no name of a module."""
    path = FLEET / "bench"
    module = ModuleType("bench")
    module.__file__ = str(path)
    exec(compile(path.read_text(), path, "exec"), module.__dict__)
    monkeypatch.setattr(module, "PYTHON", tmp_path / "python")
    monkeypatch.setattr(module, "MESH_ROUND", MESH_ROUND)
    return module


@pytest.mark.parametrize("homes", [1, 2, 3])
def test_the_truncated_shard_is_half_of_one(tmp_path: pathlib.Path, homes: int) -> None:
    make_homes(tmp_path, "--homes", homes, "--nights", 1, "--per-shard", 50, "--cut")
    whole = (tmp_path / "2026-11-20/fw2.4-00000.tar.gz").read_bytes()
    assert (tmp_path / "2026-11-20/fw2.5-99999.tar.gz").read_bytes() == whole[: len(whole) // 2]


@pytest.mark.parametrize(
    ("line", "status", "accepted"),
    [
        ("2 shards, 0 quarantined; 9 partitions", 0, True),
        ("2 shards, 0 quarantined; 9 partitions", 1, True),
        ("2 shards, 1 quarantined; 9 partitions", 1, False),
        ("20 shards, 10 quarantined; 9 partitions", 1, False),
        ("2 shards, 0 quarantined; 9 partitions", 2, False),
    ],
)
def test_a_load_that_leaves_shards_out_is_not_measured(
    bench: ModuleType, capsys: pytest.CaptureFixture[str], line: str, status: int, accepted: bool
) -> None:
    bench.PYTHON.write_text(f"#!/bin/sh\necho '{line}'\nexit {status}\n")
    bench.PYTHON.chmod(0o755)
    if accepted:
        bench.run_load("shards", "target")
        assert capsys.readouterr().out.startswith("seconds ")
    else:
        with pytest.raises(SystemExit, match="not all shards were loaded"):
            bench.run_load("shards", "target")


def test_shards_that_were_not_finished_are_made_again(
    bench: ModuleType, tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    failing = tmp_path / "mesh_round"
    failing.write_text(f'#!/bin/sh\n[ "$3" = 1 ] && exec {MESH_ROUND} "$@"\n')
    failing.chmod(0o755)
    monkeypatch.setattr(bench, "PER_SHARD", 1)
    with monkeypatch.context() as first:
        first.setattr(bench, "MESH_ROUND", failing)
        with pytest.raises(subprocess.CalledProcessError):
            bench.make_shards(2, tmp_path / "shards")
    assert not (tmp_path / "shards").exists()
    bench.make_shards(2, tmp_path / "shards")
    assert len(list((tmp_path / "shards").glob("*/*.tar.gz"))) == 2
