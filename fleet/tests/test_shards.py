# SPDX-License-Identifier: Apache-2.0
"""Shards from somewhere else, loaded without Spark: what executors do."""

import gzip
import io
import os
import pathlib
import sys
import tarfile
import zipfile
from collections.abc import Callable

import pyarrow as pa
import pyarrow.parquet as pq
import pytest

from algdata_fleet.formats import read_kinds
from algdata_fleet.reconcile import scattered
from algdata_fleet.shardload import Job, Report, WrongWorker, load_parts, load_shard
from algdata_fleet.shards import find_shards
from algdata_fleet.staging import file_of
from algdata_fleet.templates import Templates
from algdata_fleet.tool import Limits
from conftest import ALGDATA

RANK = b"0a4e00000001 000000000000 0\n0a4e00000002 000000000000 1\n"
NAME = "2026-11-20/s.tar.gz"
Load = Callable[..., tuple[list[Report], Callable[[str], list[dict[str, object]]]]]


def member(name: str, **properties: object) -> tarfile.TarInfo:
    info = tarfile.TarInfo(name)
    for key, value in properties.items():
        setattr(info, key, value)
    return info


def write_tar(path: pathlib.Path, members: list[tuple[tarfile.TarInfo, bytes]], mode: str = "w:gz") -> None:
    path.parent.mkdir(parents=True, exist_ok=True)
    with tarfile.open(path, mode) as archive:  # type: ignore[call-overload]
        for info, content in members:
            info.size = len(content)
            archive.addfile(info, io.BytesIO(content))


@pytest.fixture
def load(tmp_path: pathlib.Path) -> Load:
    def run(
        templates: tuple[str, ...] = ("{day}/*/{home}/*",), algdata: str = ALGDATA, **limits: int
    ) -> tuple[list[Report], Callable[[str], list[dict[str, object]]]]:
        source, staging = tmp_path / "source", tmp_path / "staging"
        which = Templates(templates)
        found = find_shards(str(source), which)
        kinds, days = read_kinds(algdata)[1], frozenset(found.days)
        job = Job(str(source), str(staging), which, algdata, kinds, Limits(**limits), days)
        reports = [report for shard in found.shards for report in load_parts(job, shard)]

        def rows(table: str) -> list[dict[str, object]]:
            names = [file_of(report.shard.number, report.attempt) for report in reports]
            found = [path for name in names if (path := staging / table / name).exists()]
            return pa.concat_tables([pq.read_table(path) for path in found]).to_pylist() if found else []

        return reports, rows

    return run


def write_hostile_tar(path: pathlib.Path) -> None:
    write_tar(
        path,
        [
            (member("good/ap_rank.txt"), RANK),
            (member("../evil/ap_rank.txt"), RANK),
            (member("/evil/ap_rank.txt"), RANK),
            (member("two//ap_rank.txt"), RANK),
            (member("link/ap_rank.txt", type=tarfile.SYMTYPE, linkname="/etc/passwd"), b""),
            (member("hard/ap_rank.txt", type=tarfile.LNKTYPE, linkname="good/ap_rank.txt"), b""),
            (member("new\nline/ap\nrank.txt"), RANK),
            (member("-rf/--help"), RANK),
            (member("\udcff\udcfe/ap_rank.txt"), RANK),
            (member('quote"/$(touch evil);.txt'), RANK),
            (member("good/ap_rank.txt"), RANK),
            (member("good/inner.tar"), RANK),
            (member("good/.hidden"), RANK),
            (member("good/device", type=tarfile.CHRTYPE), b""),
            (member("good/pipe", type=tarfile.FIFOTYPE), b""),
            (member("./dot/ap_rank.txt"), RANK),
            (member("deep/in/ap_rank.txt"), RANK),
        ],
    )


HOSTILE_HOMES = {"good", "new\nline", "-rf", "\\xff\\xfe", 'quote"', "dot"}


def test_a_hostile_tar_loads_what_is_a_file_and_refuses_the_rest(load: Load, tmp_path: pathlib.Path) -> None:
    outside = tmp_path / "evil"
    write_hostile_tar(tmp_path / "source" / NAME)
    (report,), rows = load()
    assert report.quarantined == ""
    assert {row["home"] for row in rows("ap_rank")} == HOSTILE_HOMES
    refused = {row["_path"]: row["reason"] for row in rows("file") if row["status"] == "refused"}
    assert refused == {
        f"{NAME}/../evil/ap_rank.txt": "expected a relative name without empty parts, `.` and `..`",
        f"{NAME}//evil/ap_rank.txt": "expected a relative name without empty parts, `.` and `..`",
        f"{NAME}/two//ap_rank.txt": "expected a relative name without empty parts, `.` and `..`",
        f"{NAME}/link/ap_rank.txt": "a symbolic link is not followed",
        f"{NAME}/hard/ap_rank.txt": "it is a hard link; its content is under another name",
        f"{NAME}/good/ap_rank.txt": "the archive has this name more than once",
        f"{NAME}/good/inner.tar": "an archive in an archive is not read; extract it first",
        f"{NAME}/deep/in/ap_rank.txt": "no --path matches",
    }
    assert report.files == {"loaded": 6, "refused": 8}
    assert (report.records, len(rows("ap_rank"))) == (12, 12)
    assert not outside.exists() and not (tmp_path / "source/evil").exists()


@pytest.mark.parametrize("keep", [0, 1, 30, 200])
def test_a_truncated_archive_is_quarantined_whole(load: Load, tmp_path: pathlib.Path, keep: int) -> None:
    path = tmp_path / "source" / NAME
    write_tar(path, [(member(f"h{n}/ap_rank.txt"), RANK) for n in range(100)])
    path.write_bytes(path.read_bytes()[:keep])
    (report,), rows = load()
    assert NAME in report.quarantined
    assert (report.files, rows("ap_rank"), rows("file")) == ({}, [], [])
    assert [row["reason"] for row in rows("quarantine")] == [report.quarantined]


def test_an_archive_whose_name_is_not_utf8_is_quarantined_for_its_own_reason(
    load: Load, tmp_path: pathlib.Path
) -> None:
    path = tmp_path / "source/2026-11-20/\udcff.tar.gz"
    write_tar(path, [(member(f"h{n}/ap_rank.txt"), RANK) for n in range(100)])
    path.write_bytes(path.read_bytes()[:200])
    (report,), _ = load()
    assert report.quarantined.endswith(": its gzip data is truncated")


def test_a_link_refuses_no_files_below_its_name(load: Load, tmp_path: pathlib.Path) -> None:
    members = [
        (member("h1", type=tarfile.SYMTYPE, linkname="h2"), b""),
        (member("h1/ap_rank.txt"), RANK),
        (member("h2/../h3"), b""),
    ]
    write_tar(tmp_path / "source" / NAME, members)
    (report,), rows = load()
    assert (report.quarantined, report.files) == ("", {"loaded": 1, "refused": 2})
    assert [row["home"] for row in rows("ap_rank")] == ["h1", "h1"]


@pytest.mark.parametrize(
    ("keep", "reason"),
    [
        (50 * 1024, "h49/ap_rank.txt: it is truncated: the zeros at the end of a tar archive are missing"),
        (50 * 1024 + 530, "h50/ap_rank.txt: Truncated input file (needed 512 bytes, only 18 available)"),
    ],
)
def test_a_tar_without_its_end_is_quarantined(
    load: Load, tmp_path: pathlib.Path, keep: int, reason: str
) -> None:
    """It ends between two files, or within one."""
    path = tmp_path / "source" / NAME.removesuffix(".gz")
    write_tar(path, [(member(f"h{n}/ap_rank.txt"), RANK) for n in range(100)], "w")
    path.write_bytes(path.read_bytes()[:keep])
    (report,), rows = load()
    assert report.quarantined == f"cannot read 2026-11-20/s.tar after {reason}"
    assert rows("ap_rank") == []


def test_a_bomb_ends_at_the_limit_of_memory(load: Load, tmp_path: pathlib.Path) -> None:
    write_tar(tmp_path / "source" / NAME, [(member("h1/zeros.txt"), bytes(300 << 20))])
    (report,), rows = load(megabytes=200)
    assert report.quarantined == "the query needs more memory than it may use"
    assert rows("file") == []


def test_a_command_that_hangs_ends_at_the_limit_of_time(load: Load, tmp_path: pathlib.Path) -> None:
    slow = tmp_path / "algdata"
    slow.write_text(f'#!/bin/sh\n[ "$1" = kinds ] || sleep 100\nexec {ALGDATA} "$@"\n')
    slow.chmod(0o755)
    write_tar(tmp_path / "source" / NAME, [(member("h1/ap_rank.txt"), RANK)])
    (report,), _ = load(algdata=str(slow), seconds=1)
    assert report.quarantined == "algdata took more than 1 s, the limit for a shard"


def test_a_command_that_writes_ends_at_a_limit(load: Load, tmp_path: pathlib.Path) -> None:
    talking = tmp_path / "algdata"
    talking.write_text(f'#!/bin/sh\n[ "$1" = kinds ] || exec yes >&2\nexec {ALGDATA} "$@"\n')
    talking.chmod(0o755)
    write_tar(tmp_path / "source" / NAME, [(member("h1/ap_rank.txt"), RANK)])
    (report,), _ = load(algdata=str(talking), megabytes=50, seconds=20)
    assert report.quarantined == "algdata was ended by SIGXFSZ"


def test_a_command_of_many_threads_ends_at_the_limit_of_time(load: Load, tmp_path: pathlib.Path) -> None:
    """Its processor time is more than the time."""
    busy = tmp_path / "algdata"
    busy.write_text(f"""#!{sys.executable}
import hashlib, subprocess, sys, threading
if sys.argv[1] == "kinds":
    sys.exit(subprocess.run(["{ALGDATA}", *sys.argv[1:]]).returncode)
for _ in range(4):
    threading.Thread(target=hashlib.pbkdf2_hmac, args=("sha256", b"", b"", 100_000_000)).start()
""")
    busy.chmod(0o755)
    write_tar(tmp_path / "source" / NAME, [(member("h1/ap_rank.txt"), RANK)])
    (report,), _ = load(algdata=str(busy), seconds=2)
    assert report.quarantined == "algdata took more than 2 s, the limit for a shard"


def test_a_command_that_dies_is_no_empty_shard(load: Load, tmp_path: pathlib.Path) -> None:
    dying = tmp_path / "algdata"
    dying.write_text(f'#!/bin/sh\n[ "$1" != export ] || kill -9 $$\nexec {ALGDATA} "$@"\n')
    dying.chmod(0o755)
    write_tar(tmp_path / "source" / NAME, [(member("h1/ap_rank.txt"), RANK)])
    (report,), rows = load(algdata=str(dying))
    assert report.quarantined == "algdata was ended by SIGKILL"
    assert rows("ap_rank") == []


@pytest.mark.parametrize("command", ["sql", "export"])
@pytest.mark.parametrize(
    ("ending", "reason"),
    [
        ("sleep 100", "algdata took more than 1 s, the limit for a shard"),
        ("kill -9 $$", "algdata was ended by SIGKILL"),
        ("echo 'algdata: the disk is broken' >&2; exit 3", "the disk is broken"),
        ("exit 0", "algdata has ended within a line of its output"),
    ],
)
def test_a_command_that_ends_within_a_line_is_quarantined_with_the_cause(
    load: Load, tmp_path: pathlib.Path, command: str, ending: str, reason: str
) -> None:
    torn = tmp_path / "algdata"
    torn.write_text(f"""#!/bin/sh
[ $1 = {command} ] || exec {ALGDATA} "$@"
printf '{{"kind":"ap-rank","sou'
{ending}
""")
    torn.chmod(0o755)
    write_tar(tmp_path / "source" / NAME, [(member("h1/ap_rank.txt"), RANK)])
    (report,), rows = load(algdata=str(torn), seconds=1)
    assert report.quarantined == reason
    assert [row["reason"] for row in rows("quarantine")] == [reason]


@pytest.mark.parametrize(
    ("change", "reason"),
    [
        ("/h2/d", "it is in the shard, but algdata has not seen it"),
        ("s/h2/h3/", "it is in the shard, but algdata has not seen it"),
    ],
)
def test_a_file_that_algdata_does_not_see_is_noticed(
    load: Load, tmp_path: pathlib.Path, change: str, reason: str
) -> None:
    forgetful = tmp_path / "algdata"
    forgetful.write_text(f'#!/bin/bash\nset -o pipefail\n{ALGDATA} "$@" | sed "{change}"\n')
    forgetful.chmod(0o755)
    write_tar(tmp_path / "source" / NAME, [(member(f"h{n}/ap_rank.txt"), RANK) for n in (1, 2)])
    (report,), rows = load(algdata=str(forgetful))
    assert report.quarantined.endswith(f"{NAME}/h2/ap_rank.txt: {reason}")
    assert rows("ap_rank") == []


def test_a_record_that_is_lost_is_noticed(load: Load, tmp_path: pathlib.Path) -> None:
    losing = tmp_path / "algdata"
    losing.write_text(f'#!/bin/bash\n{ALGDATA} "$@" | if [ $1 = export ]; then sed 1d; else cat; fi\n')
    losing.chmod(0o755)
    write_tar(tmp_path / "source" / NAME, [(member("h1/ap_rank.txt"), RANK)])
    (report,), rows = load(algdata=str(losing))
    assert report.quarantined == f"{NAME}/h1/ap_rank.txt: 1 of 2 records; did it change while it was read?"
    assert rows("ap_rank") == []


def test_an_attempt_that_fails_leaves_the_files_of_another(load: Load, tmp_path: pathlib.Path) -> None:
    """Such as one on an executor that was lost and still runs."""
    write_tar(tmp_path / "source" / NAME, [(member("h1/ap_rank.txt"), RANK)])
    first, second = load()[0][0], load()[0][0]
    dying = tmp_path / "algdata"
    dying.write_text(f'#!/bin/sh\n[ "$1" != export ] || kill -9 $$\nexec {ALGDATA} "$@"\n')
    dying.chmod(0o755)
    third = load(algdata=str(dying))[0][0]
    assert third.quarantined != ""
    assert sorted(path.name for path in (tmp_path / "staging/file").iterdir()) == sorted(
        f"000000-{report.attempt}.parquet" for report in (first, second)
    )


def test_more_files_than_the_limit(load: Load, tmp_path: pathlib.Path) -> None:
    write_tar(tmp_path / "source" / NAME, [(member(f"h{n}/ap_rank.txt"), RANK) for n in range(11)])
    (report,), _ = load(files=10)
    assert report.quarantined == "it has more than 10 files, the limit for a shard"
    (report,), _ = load(files=11)
    assert report.files == {"loaded": 11}


@pytest.mark.parametrize("ending", ["tar", "tgz", "zip", "tar.zst"])
def test_every_format_has_the_same_rows(load: Load, tmp_path: pathlib.Path, ending: str) -> None:
    path = tmp_path / f"source/2026-11-20/s.{ending}"
    members = [
        (member("h1/ap_rank.txt"), RANK),
        (member("h2/é.txt"), RANK),
        (member("h3/link", type=b"2"), b""),
    ]
    if ending == "zip":
        path.parent.mkdir(parents=True)
        with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
            for info, content in members[:2]:
                archive.writestr(info.name, content)
            link = zipfile.ZipInfo("h3/link")
            link.external_attr = 0o120777 << 16
            archive.writestr(link, "/etc/passwd")
    else:
        write_tar(path, members, "w:gz" if ending == "tgz" else "w")
        if ending == "tar.zst":
            path.write_bytes(pa.compress(path.read_bytes(), "zstd", asbytes=True))
    (report,), rows = load()
    assert report.quarantined == ""
    assert report.files == {"loaded": 2, "refused": 1}
    assert [row["home"] for row in rows("ap_rank")] == ["h1", "h1", "h2", "h2"]


STRANGE = ["a\x01\udcff", "é\u200b\udcff\udcfe", "日\u0301\udce2\udc82", "\x7f\udcff", "\u200b"]


@pytest.mark.parametrize("packed", [False, True])
def test_names_that_are_not_text_are_known_as_algdata_prints_them(
    load: Load, tmp_path: pathlib.Path, packed: bool
) -> None:
    if packed:
        write_tar(tmp_path / "source" / NAME, [(member(f"{name}/ap_rank.txt"), RANK) for name in STRANGE])
    for name in STRANGE if not packed else []:
        home = tmp_path / "source/2026-11-20/fw1" / name
        home.mkdir(parents=True)
        (home / "ap_rank.txt").write_bytes(RANK)
    (report,), rows = load()
    assert report.quarantined == ""
    assert {row["home"] for row in rows("ap_rank")} == {
        "a\\x01\\xff",
        "é\\xe2\\x80\\x8b\\xff\\xfe",
        "日\\xcc\\x81\\xe2\\x82",
        "\\x7f\\xff",
        "\u200b",
    }


def test_names_of_two_characters_for_one_letter_are_composed(load: Load, tmp_path: pathlib.Path) -> None:
    """algdata composes those of zip archives and of the newer tar archives, and no others."""
    letter, home = "e\u0301", "2026-11-20/fw1/e\u0301"
    (tmp_path / "source" / home).mkdir(parents=True)
    (tmp_path / "source" / home / "ap_rank.txt").write_bytes(RANK)
    for name, form in (("new.tar", tarfile.PAX_FORMAT), ("old.tar", tarfile.GNU_FORMAT)):
        with tarfile.open(tmp_path / "source/2026-11-20" / name, "w", format=form) as archive:
            archive.addfile(member(f"{letter}/ap_rank.txt", size=len(RANK)), io.BytesIO(RANK))
    with zipfile.ZipFile(tmp_path / "source/2026-11-20/s.zip", "w") as archive:
        archive.writestr(f"{letter}/ap_rank.txt", RANK)
    reports, rows = load()
    assert [report.quarantined for report in reports] == [""] * 4
    assert {(row["_shard"], row["home"]) for row in rows("ap_rank")} == {
        (home, "e\u0301"),
        ("2026-11-20/new.tar", "\u00e9"),
        ("2026-11-20/old.tar", "e\u0301"),
        ("2026-11-20/s.zip", "\u00e9"),
    }


def test_the_configuration_of_algdata_is_no_record_file(load: Load, tmp_path: pathlib.Path) -> None:
    home = tmp_path / "source/2026-11-20/fw1/h1"
    home.mkdir(parents=True)
    (home / "ap_rank.txt").write_bytes(RANK)
    (home / "algdata.toml").write_text("[names]\n")
    (report,), _ = load()
    assert (report.quarantined, report.files) == ("", {"loaded": 1})


def test_archives_that_follow_each_other(load: Load, tmp_path: pathlib.Path) -> None:
    path = tmp_path / "source/2026-11-20/s.tar"
    write_tar(path, [(member("h1/ap_rank.txt"), RANK)], "w")
    first = path.read_bytes()
    write_tar(path, [(member("h2/ap_rank.txt"), RANK)], "w")
    path.write_bytes(first + path.read_bytes())
    (report,), _ = load()
    assert (report.quarantined, report.files) == ("", {"loaded": 2})


@pytest.mark.parametrize(("name", "keep"), [("old.tar.gz", 150), ("old.tar", 20 * 1024 + 700)])
def test_a_damaged_archive_in_a_home_refuses_that_archive_only(
    load: Load, tmp_path: pathlib.Path, name: str, keep: int
) -> None:
    """Of the second one, algdata reads some files, and finds something in them."""
    homes = tmp_path / "source/2026-11-20/batch"
    for home in ("h1", "h2"):
        (homes / home).mkdir(parents=True)
        (homes / home / "ap_rank.txt").write_bytes(RANK)
    old = homes / "h1" / name
    write_tar(old, [(member(f"x{n}.txt"), RANK + b"x\n") for n in range(50)], "w:gz" if "gz" in name else "w")
    old.write_bytes(old.read_bytes()[:keep])
    (report,), rows = load()
    assert report.quarantined == ""
    assert report.files == {"loaded": 2, "refused": 1}
    assert [row["home"] for row in rows("ap_rank")] == ["h1", "h1", "h2", "h2"]
    assert [row["_path"] for row in rows("file") if row["status"] == "refused"] == [
        f"2026-11-20/batch/h1/{name}"
    ]


def test_a_home_that_cannot_be_loaded_leaves_the_others(load: Load, tmp_path: pathlib.Path) -> None:
    """A link would bring files from elsewhere into the tree of the home."""
    index = b"2 1 0 1\n0a4e00000001 000000000000 0 9\n0a4e00000002 0a4e00000001 1 9\n"
    homes = tmp_path / "source/2026-11-20/fw1"
    for home in ("h1", "h2", "h3: x", "h4", "h5"):
        (homes / home).mkdir(parents=True)
        (homes / home / "ap_rank.txt").write_bytes(RANK)
    (tmp_path / "ap_rank_index.txt").write_bytes(index)
    (homes / "h2/ap_rank_index.txt").symlink_to(tmp_path / "ap_rank_index.txt")
    (homes / "h4/old").symlink_to(homes / "h1")
    (homes / "h5/gone.txt").symlink_to("nowhere")
    refusing = tmp_path / "algdata"
    refusing.write_text(f"""#!/bin/sh
case $1,$* in sql,*h3:*) echo "algdata: cannot read ./2026-11-20/fw1/h3: x: no permission" >&2; exit 2 ;; esac
exec {ALGDATA} "$@"
""")
    refusing.chmod(0o755)
    reports, rows = load(algdata=str(refusing))
    followed = "ap_rank_index.txt: it is a symbolic link to a file, which algdata follows"
    different = "the files do not agree with an independent listing: "
    assert {report.shard.name: report.quarantined for report in reports} == {
        "2026-11-20/fw1/h1": "",
        "2026-11-20/fw1/h2": f"{different}2026-11-20/fw1/h2/{followed}",
        "2026-11-20/fw1/h3: x": "cannot read ./2026-11-20/fw1/h3: x: no permission",
        "2026-11-20/fw1/h4..h5": "",
    }
    assert [row["home"] for row in rows("ap_rank")] == ["h1", "h1", "h4", "h4", "h5", "h5"]
    assert [row["_path"] for row in rows("file") if row["status"] == "refused"] == [
        "2026-11-20/fw1/h4/old",
        "2026-11-20/fw1/h5/gone.txt",
    ]
    assert rows("rank_entry") == []
    assert "h2" not in {row["home"] for table in ("tree", "audit", "finding") for row in rows(table)}


def test_links_and_what_is_no_shard(load: Load, tmp_path: pathlib.Path) -> None:
    day = tmp_path / "source/2026-11-20"
    day.mkdir(parents=True)
    (day / "link.tar").symlink_to("/etc/passwd")
    (day / "-").write_bytes(b"")
    (day / "empty.tar").write_bytes(b"")
    (day / "text.zip").write_bytes(b"hello")
    os.mkfifo(day / "pipe.tar")
    no_archive = "it is no tar or zip archive, or its end is missing"
    reports, _ = load()
    assert {report.shard.name: report.quarantined for report in reports} == {
        "2026-11-20/link.tar": "a symbolic link is not followed",
        "2026-11-20/empty.tar": "cannot read 2026-11-20/empty.tar: it is empty, expected an archive",
        "2026-11-20/text.zip": f"cannot read 2026-11-20/text.zip: {no_archive}",
        "2026-11-20/": "",
    }


@pytest.mark.parametrize("path", [None, "", "."])
def test_no_code_of_the_source_is_run(
    load: Load, tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch, path: str | None
) -> None:
    """Not even if PYTHONPATH names the working directory, as `:` at one of its ends does."""
    code = f"open({str(tmp_path / 'mark')!r}, 'w').close()\n"
    for name in ("json.py", "gzip/__init__.py", "algdata_fleet/__init__.py"):
        (tmp_path / "source" / name).parent.mkdir(parents=True, exist_ok=True)
        (tmp_path / "source" / name).write_text(code)
    if path is not None:
        monkeypatch.setenv("PYTHONPATH", f"{path}:{os.environ.get('PYTHONPATH', '')}")
        monkeypatch.setattr(sys, "path", [path, *sys.path])
    write_tar(tmp_path / "source" / NAME, [(member("h1/ap_rank.txt"), RANK)])
    reports, _ = load()
    assert not (tmp_path / "mark").exists()
    assert [report.quarantined for report in reports if report.shard.name == NAME] == [""]


@pytest.mark.parametrize("name", ["s.tar.gz", "batch/h1"])
def test_a_shard_that_is_missing_is_an_error_of_the_worker(tmp_path: pathlib.Path, name: str) -> None:
    path = tmp_path / "source/2026-11-20" / name
    path.parent.mkdir(parents=True)
    path.write_bytes(b"") if "." in name else path.mkdir()
    which = Templates(["{day}/*/{home}/*"])
    (shard,) = find_shards(str(tmp_path / "source"), which).shards
    path.rename(tmp_path / "moved")
    kinds = read_kinds(ALGDATA)[1]
    job = Job(
        str(tmp_path / "source"), str(tmp_path / "staging"), which, ALGDATA, kinds, Limits(), frozenset()
    )
    with pytest.raises(WrongWorker, match=f": 2026-11-20/{name} is missing, which the driver has listed; "):
        load_shard(job, shard)
    assert list((tmp_path / "staging").glob("*/*")) == []


def test_many_files_outside_of_homes_are_listed_in_groups(
    load: Load, tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    """The names are arguments of a command, which can have two megabytes of them."""
    day = tmp_path / "source/2026-11-20"
    day.mkdir(parents=True)
    for number in range(5):
        (day / f"{number}.md5").write_bytes(b"")
    monkeypatch.setattr("algdata_fleet.shards.NAME_BYTES", 50)
    reports, rows = load()
    assert [report.shard.name for report in reports] == [
        "2026-11-20/0.md5..1.md5",
        "2026-11-20/2.md5..3.md5",
        "2026-11-20/4.md5",
    ]
    assert [row["_path"] for row in rows("file")] == [f"2026-11-20/{number}.md5" for number in range(5)]


def test_an_archive_of_nothing_is_loaded(load: Load, tmp_path: pathlib.Path) -> None:
    path = tmp_path / "source/2026-11-20/s.tar.gz"
    path.parent.mkdir(parents=True)
    path.write_bytes(gzip.compress(bytes(10240)))
    (report,), _ = load()
    assert (report.quarantined, report.files) == ("", {})


def test_damaged_values_are_null_and_short_arrays_are_filled(load: Load, tmp_path: pathlib.Path) -> None:
    delays = b"0a4e00000001 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15\n"
    write_tar(
        tmp_path / "source" / NAME,
        [(member("h1/time_delay.txt"), delays * 3 + delays.replace(b" 8 ", b" x ") + delays)],
    )
    (report,), rows = load()
    assert report.records == 5
    samples = [row["delayTime"] for row in rows("time_delay_sample")]
    assert samples == [*range(1, 16)] * 3 + [*range(1, 8), None, *range(9, 16)] + [*range(1, 16)]


def test_findings_and_trees_have_their_home(load: Load, tmp_path: pathlib.Path) -> None:
    index = b"2 1 0 1\n0a4e00000001 0a4e00000002 0 9\n0a4e00000002 0a4e00000001 1 9\n"
    write_tar(
        tmp_path / "source" / NAME, [(member("h1/ap_rank_index.txt"), index), (member("h1/r.txt"), RANK[:40])]
    )
    _, rows = load()
    assert {(row["home"], row["rule"]) for row in rows("audit")} >= {("h1", "father-cycle")}
    assert {(row["home"], row["rule"]) for row in rows("finding")} >= {("h1", "torn-record")}
    assert {(row["home"], row["attachment"]) for row in rows("tree")} == {("h1", "cycle")}


def test_findings_need_no_file_that_is_loaded(load: Load, tmp_path: pathlib.Path) -> None:
    write_tar(
        tmp_path / "source" / NAME,
        [(member("h1/ap_rank.txt"), RANK.decode().encode("utf-16")), (member("h2/score.txt"), b"")],
    )
    (report,), rows = load()
    assert report.files == {"refused": 1, "empty": 1}
    assert {(row["home"], row["rule"]) for row in rows("finding")} == {("h1", "utf-16"), ("h2", "empty-file")}


def test_a_file_that_belongs_nowhere_has_no_findings(load: Load, tmp_path: pathlib.Path) -> None:
    index = b"2 1 0 1\n0a4e00000001 0a4e00000002 0 9\n0a4e00000002 0a4e00000001 1 9\n"
    write_tar(
        tmp_path / "source" / NAME,
        [(member("h1/ap_rank.txt"), RANK), (member("h2/in/ap_rank_index.txt"), index + b"x\n")],
    )
    (report,), rows = load()
    assert (report.quarantined, report.files) == ("", {"loaded": 1, "refused": 1})
    assert (rows("finding"), rows("audit"), {row["home"] for row in rows("tree")}) == ([], [], {"h1"})


@pytest.mark.parametrize(("table", "change"), [("finding", "torn-record"), ("tree", "attachment")])
def test_a_row_of_an_unknown_path_is_noticed(
    load: Load, tmp_path: pathlib.Path, table: str, change: str
) -> None:
    renaming = tmp_path / "algdata"
    renaming.write_text(f"""#!/bin/bash
set -o pipefail
{ALGDATA} "$@" | sed '/{change}/s-/h1/-/h9/-'
""")
    renaming.chmod(0o755)
    write_tar(tmp_path / "source" / NAME, [(member("h1/ap_rank.txt"), RANK[:40])])
    (report,), rows = load(algdata=str(renaming))
    path = f"{NAME}/h9/ap_rank.txt" if table == "finding" else f"{NAME}/h9/"
    why = f"{path}: {table} has a row of it, but it is not in the shard's listing"
    assert (report.quarantined, rows(table)) == (why, [])


@pytest.mark.parametrize("name", [NAME, "2026-11-20/batch/h1/ap_rank.txt"])
def test_a_shard_that_changes_between_two_passes_is_quarantined(
    load: Load, tmp_path: pathlib.Path, name: str
) -> None:
    """Its findings would be missing."""
    changing = tmp_path / "algdata"
    changing.write_text(f"""#!/bin/sh
case $* in *"FROM finding"*) truncate -s 20 {tmp_path}/source/{name} ;; esac
exec {ALGDATA} "$@"
""")
    changing.chmod(0o755)
    write_tar(tmp_path / "source" / name, [(member("h1/ap_rank.txt"), RANK)])
    if name != NAME:
        (tmp_path / "source" / name).write_bytes(RANK)
    (report,), rows = load(algdata=str(changing))
    assert (report.quarantined, rows("ap_rank")) == ("it has changed while it was read", [])


def test_a_home_whose_files_do_not_stand_together_is_refused(load: Load, tmp_path: pathlib.Path) -> None:
    """Its tree would be several trees, each of some of its files."""
    index = b"1 1 0 1\n0a4e00000001 000000000000 0 9\n"
    names = [
        "h1/ap_rank.txt",
        "h2/ap_rank.txt",
        "h2/in/x.txt",
        "h2/ap_rank_index.txt",
        "h1/ap_rank_index.txt",
    ]
    members = [(member(name), index if "index" in name else RANK) for name in [*names, "h3/ap_rank.txt"]]
    write_tar(tmp_path / "source" / NAME, members)
    (report,), rows = load()
    why = "the files of its directory do not stand together in the archive"
    assert [(row["_path"], row["reason"]) for row in rows("file") if row["status"] == "refused"] == [
        (f"{NAME}/h1/ap_rank.txt", why),
        (f"{NAME}/h2/in/x.txt", "no --path matches"),
        (f"{NAME}/h1/ap_rank_index.txt", why),
    ]
    trees = [(row["home"], row["deviceMAC"][-1]) for row in rows("tree")]
    assert sorted(trees) == [("h2", "1"), ("h2", "2"), ("h3", "1"), ("h3", "2")]
    assert report.quarantined == ""


@pytest.mark.parametrize(
    ("names", "directories"),
    [
        (["a/x", "b/x", "b/y"], set()),
        (["a/x", "b/x", "a/y"], {"a/"}),
        (["a/x", "a/b/x", "a/y", "a/c/x", "a/z"], set()),
        (["a/b/x", "a/x", "a/b/y"], {"a/b/"}),
        (["a/b/x", "a/c/x", "a/y"], set()),
        (["a/b/x", "c/x", "a/y"], set()),
        (["a/x", "b", "a/y"], {"a/"}),
        (["a/x", "ab/x", "a/y", "ab/y"], {"a/", "ab/"}),
        (["a/x", "b/x", "a/x"], set()),
    ],
)
def test_which_directories_are_scattered(names: list[str], directories: set[str]) -> None:
    """The last one has a name twice, of which only the first counts."""
    assert scattered([(name, "file") for name in names]) == directories
