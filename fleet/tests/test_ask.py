# SPDX-License-Identifier: Apache-2.0
"""The command: questions, formats, errors."""

import json
import pathlib
import re
import shutil
import subprocess
import sys
from collections.abc import Iterator

import pyarrow as pa
import pyarrow.parquet as pq
import pytest
from pyspark.sql import SparkSession

from algdata_fleet import FleetError
from algdata_fleet.ask import ask_spark, questions
from algdata_fleet.cli import main, say_some
from algdata_fleet.output import printable, table_text
from conftest import ALGDATA


def fleet(*arguments: object) -> tuple[int, str, str]:
    done = subprocess.run(
        [sys.executable, "-m", "algdata_fleet", *map(str, arguments)], capture_output=True, text=True
    )
    return done.returncode, done.stdout, done.stderr


@pytest.fixture(scope="module")
def small(tmp_path_factory: pytest.TempPathFactory) -> pathlib.Path:
    """A dataset of one table, as any program can write it."""
    target = tmp_path_factory.mktemp("small")
    (target / "score/day=2026-11-20").mkdir(parents=True)
    rows = pa.table({"home": ["h1", "h\n2", None], "rate": [1, 20, None]})
    pq.write_table(rows, target / "score/day=2026-11-20/part-0.parquet")
    return target


SQL = "SELECT home, rate, day FROM score ORDER BY rate NULLS LAST"


def test_each_format(small: pathlib.Path, tmp_path: pathlib.Path) -> None:
    ask = ("ask", small, "--engine", "duckdb", "-e", SQL)
    assert fleet(*ask) == (
        0,
        "home  rate  day\nh1       1  2026-11-20\nh\\n2    20  2026-11-20\n-        -  2026-11-20\n",
        "",
    )
    assert fleet(*ask, "-f", "csv", "--limit", 2)[1] == (
        'home,rate,day\nh1,1,2026-11-20\n"h\n2",20,2026-11-20\n'
    )
    lines = fleet(*ask, "-f", "json")[1].splitlines()
    assert [json.loads(line) for line in lines][1:] == [
        {"home": "h\n2", "rate": 20, "day": "2026-11-20"},
        {"home": None, "rate": None, "day": "2026-11-20"},
    ]
    out = tmp_path / "answer.parquet"
    assert fleet(*ask, "-f", "parquet", "-o", out)[0] == 0
    assert pq.read_table(out)["rate"].to_pylist() == [1, 20, None]


def test_an_output_that_is_no_file_is_written_to(small: pathlib.Path, tmp_path: pathlib.Path) -> None:
    """The device is a link here: a program that replaces its output replaces the link."""
    link = tmp_path / "full"
    link.symlink_to("/dev/full")
    status, _, messages = fleet("ask", small, "--engine", "duckdb", "-e", SQL, "-o", link)
    assert (status, messages) == (2, f"algdata-fleet: {link}: cannot write it: No space left on device\n")
    assert link.is_symlink() and link.is_char_device()


def test_a_link_to_a_file_stays_a_link(small: pathlib.Path, tmp_path: pathlib.Path) -> None:
    link = tmp_path / "link"
    link.symlink_to("file")
    assert fleet("ask", small, "--engine", "duckdb", "-e", "SELECT 1 AS a", "-o", link)[0] == 0
    assert link.is_symlink() and (tmp_path / "file").read_text() == "a\n1\n"


def test_a_file_is_a_question(small: pathlib.Path, tmp_path: pathlib.Path) -> None:
    path = tmp_path / "mine.sql"
    path.write_text("-- mine\nSELECT count(*) AS n FROM score;\n")
    assert fleet("ask", small, path, "--engine", "duckdb") == (0, "n\n3\n", "")


def test_the_list_of_questions_needs_no_engine(small: pathlib.Path) -> None:
    status, text, _ = fleet("ask", small)
    assert status == 0
    assert [line.split()[0] for line in text.splitlines()] == list(questions())


def test_the_columns_of_all_tables(small: pathlib.Path) -> None:
    assert fleet("ask", small, "--columns", "-f", "csv") == (
        0,
        "table,column,type\nscore,day,date\nscore,home,string\nscore,rate,int64\n",
        "",
    )


@pytest.mark.parametrize(
    ("closed", "why"),
    [(">&-", "the standard output is closed"), (">/dev/full", "output: No space left on device")],
)
@pytest.mark.parametrize("arguments", ["", "--columns", "--engine duckdb -e 'SELECT 1'"])
def test_an_output_that_takes_nothing(small: pathlib.Path, arguments: str, closed: str, why: str) -> None:
    command = f"{sys.executable} -m algdata_fleet ask {small} {arguments} {closed}"
    done = subprocess.run(["sh", "-c", command], stderr=subprocess.PIPE, text=True)
    assert (done.returncode, done.stderr) == (2, f"algdata-fleet: {why}\n")


@pytest.mark.parametrize("arguments", [(), ("decisions", "--explain"), ("--columns",)])
def test_a_reader_that_ends_early_ends_the_command(small: pathlib.Path, arguments: tuple[str, ...]) -> None:
    command = [sys.executable, "-m", "algdata_fleet", "ask", str(small), *arguments]
    running = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    assert running.stdout is not None
    running.stdout.close()
    assert (running.wait(), running.stderr and running.stderr.read()) == (141, "")


@pytest.mark.parametrize(
    ("arguments", "message"),
    [
        (("nothing",), "nothing: there is no such question; expected by-hop, decisions"),
        (("missing.sql",), "missing.sql: cannot read it"),
        (("-e", "SELECT rat FROM score"), '"rat" not found'),
        (("-e", "SELECT 1 FROM scores"), 'no table "scores"; did you mean score? The dataset has score'),
        (("-e", ""), "expected one query, found 0 statements"),
        (("-e", "SELECT 1; SELECT 2"), "expected one query, found 2 statements"),
        (("-e", "COPY (SELECT 1) TO 'x.csv'"), "expected a query, such as SELECT"),
        (("-e", "CREATE TABLE x AS SELECT 1"), "expected a query, such as SELECT"),
        (("-e", "ATTACH 'x.db'"), "expected a query, such as SELECT"),
        (("-e", "SELECT * FROM read_csv('/etc/passwd')"), 'Cannot access file "/etc/passwd"'),
        (("decisions", "-e", "SELECT 1"), "expected one of a question, -e and --columns"),
        (("decisions", "--columns"), "expected one of a question, -e and --columns"),
        (("-e", SQL, "-o", "/missing/x.csv"), "/missing/x.csv: cannot write it: No such file or directory"),
        (("-e", SQL, "-o", "/dev"), "/dev: cannot write it: Is a directory"),
    ],
)
def test_what_cannot_be_answered(small: pathlib.Path, arguments: tuple[str, ...], message: str) -> None:
    status, text, messages = fleet("ask", small, "--engine", "duckdb", *arguments)
    assert (status, text) == (2, "")
    assert messages.startswith("algdata-fleet: ")
    assert message in messages


@pytest.mark.parametrize(
    ("arguments", "message"),
    [
        (("ask", "/missing"), "/missing: cannot read it: No such file or directory"),
        (("ask", ".", "--limt", "3"), "`algdata-fleet ask --help` lists the options"),
        (("ask", "/missing", "decisions"), "/missing: cannot read it: No such file or directory"),
        (("ask", "/dev/null", "decisions"), "/dev/null: cannot read it: Not a directory"),
        (("load", "/missing", "x", "--path", "{day}/{home}/*", "--algdata", "true"), "as expected"),
        (("load", "/missing", "x", "--path", "{day}/{home}/*"), "/missing: it is no directory"),
        (("load", ".", "x", "--path", "{day}/*"), "it has no {home}"),
        (("load", ".", "x", "--path", "{day}/{home}/*", "--algdata", "/missing"), "/missing: not found"),
        (("load", ".", "x", "--path", "{rule}/{day}/{home}/*"), "rule is a column of finding"),
    ],
)
def test_what_cannot_be_loaded(arguments: tuple[str, ...], message: str) -> None:
    status, text, messages = fleet(*arguments)
    assert (status, text) == (2, "")
    assert message in messages


@pytest.mark.parametrize("kinds", ["5", "[1]", '{"a": 1}', '[{"kind": "x"}]', "\\377"])
def test_an_algdata_that_lists_something_else(tmp_path: pathlib.Path, kinds: str) -> None:
    other = tmp_path / "algdata"
    other.write_text(f"#!/bin/sh\nprintf '{kinds}'\n")
    other.chmod(0o755)
    status, _, messages = fleet("load", ".", tmp_path / "x", "--path", "{day}/{home}/*", "--algdata", other)
    assert (status, messages.startswith(f"algdata-fleet: {other}: it does not list its kinds")) == (2, True)


@pytest.mark.parametrize("options", [("--master", "nonsense"), ("--conf", "spark.driver.memory=nonsense")])
def test_a_spark_that_does_not_start_loads_nothing(tmp_path: pathlib.Path, options: tuple[str, ...]) -> None:
    (tmp_path / "source/2026-11-20").mkdir(parents=True)
    load = ("load", tmp_path / "source", tmp_path / "x", "--path", "{day}/{home}/*", "--algdata", ALGDATA)
    status, text, messages = fleet(*load, *options)
    assert (status, text) == (2, "")
    assert messages.splitlines()[-1].startswith("algdata-fleet: Spark cannot start: [JAVA_GATEWAY_EXITED] ")


def test_an_unexpected_error_is_not_the_status_of_a_load(
    monkeypatch: pytest.MonkeyPatch, capsys: pytest.CaptureFixture[str]
) -> None:
    monkeypatch.setattr("algdata_fleet.cli.prepare", lambda _: 1 // 0)
    assert main(["load", ".", "x", "--path", "{day}/{home}/*", "--algdata", "true"]) == 2
    assert capsys.readouterr().err.endswith("\nZeroDivisionError: integer division or modulo by zero\n")


@pytest.mark.parametrize("target", ["source", "source/dataset", "link/dataset"])
def test_a_dataset_is_not_in_its_source(tmp_path: pathlib.Path, target: str) -> None:
    (tmp_path / "source").mkdir()
    (tmp_path / "link").symlink_to("source")
    source, path = tmp_path / "source", tmp_path / target
    status, text, messages = fleet("load", source, path, "--path", "{day}/{home}/*", "--algdata", ALGDATA)
    why = f"algdata-fleet: {path}: it is in {source}; expected a directory outside of the source\n"
    assert (status, text, messages) == (2, "", why)


def test_a_source_of_nothing_is_no_night(tmp_path: pathlib.Path) -> None:
    source, target = tmp_path / "source", tmp_path / "dataset"
    source.mkdir()
    status, text, messages = fleet("load", source, target, "--path", "{day}/{home}/*", "--algdata", ALGDATA)
    why = "no shards and no directory of a night, so nothing was changed; is it mounted?"
    assert (status, text, messages) == (1, "", f"algdata-fleet: {source}: {why}\n")
    assert not target.exists()


def test_a_hostile_name_is_one_line_of_the_messages(tmp_path: pathlib.Path) -> None:
    day = tmp_path / "source/2026-11-20"
    (day / "home").mkdir(parents=True)
    (day / "home/ap_rank.txt").write_text("0a4e00000001 000000000000 0\n")
    (day / "home/a\nb\x1b[2J\x9b\u202e.txt").symlink_to("x")
    (day / "c\nd.tar").write_bytes(b"")
    paths = ("--path", "{day}/{home}/*", "--algdata", ALGDATA, "--master", "local[1]")
    status, text, messages = fleet("load", tmp_path / "source", tmp_path / "target", *paths)
    assert status == 1
    assert text == (
        "2 files: 1 loaded, 0 empty, 0 no record files, 1 refused; 1 records; 2 shards, 1 quarantined; "
        "30 partitions of 2026-11-20\n"
    )
    assert [line for line in messages.splitlines() if line.startswith("algdata-fleet: ")] == [
        f"algdata-fleet: 2 shards in {tmp_path}/source",
        r"algdata-fleet: quarantined 2026-11-20/c\nd.tar: cannot read 2026-11-20/c\nd.tar: it is empty, "
        "expected an archive",
        r"algdata-fleet: refused 2026-11-20/home/a\nb\x1b[2J\x9b\u202e.txt: a symbolic link is not followed",
    ]


def test_of_many_messages_the_first_are_shown(capsys: pytest.CaptureFixture[str]) -> None:
    say_some([f"refused {number}" for number in range(12)], 30, "file")
    lines = capsys.readouterr().err.splitlines()
    assert lines[9:] == ["algdata-fleet: refused 9", "algdata-fleet: and 20 more, in the table file"]
    say_some(["refused 1"], 1, "file")
    assert capsys.readouterr().err == "algdata-fleet: refused 1\n"


@pytest.mark.parametrize(
    ("text", "shown"),
    [("é\\n", "é\\n"), ("a\nb", r"a\nb"), ("a\\\n", r"a\\\n"), ("\x7f\x9b\u202e", r"\x7f\x9b\u202e")],
)
def test_a_name_cannot_steer_a_terminal(text: str, shown: str) -> None:
    assert printable(text) == shown


def test_a_partition_that_is_replaced_while_it_is_read(
    spark: SparkSession, small: pathlib.Path, tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    shutil.copytree(small, tmp_path / "dataset")

    def tables(sql: str, known: list[str]) -> Iterator[str]:
        yield "score"
        (tmp_path / "dataset/score/day=2026-11-20/part-0.parquet").unlink()

    monkeypatch.setattr("algdata_fleet.ask.mentioned", tables)
    with pytest.raises(FleetError, match=r"/dataset: a load has replaced what was being read; ask again$"):
        ask_spark(spark, SQL, str(tmp_path / "dataset"))


def test_an_error_of_a_task_is_one_line(spark: SparkSession, small: pathlib.Path) -> None:
    with pytest.raises(FleetError, match=r"^java.lang.RuntimeException: no rate$"):
        ask_spark(spark, "SELECT raise_error('no rate') FROM score", str(small))


@pytest.mark.parametrize(
    ("sql", "message"),
    [
        ("SELECT 1 FROM scores", 'no table "scores"; did you mean score? The dataset has score'),
        ("CREATE TABLE x AS SELECT 1", "expected a query, such as SELECT"),
        ("INSERT INTO score SELECT * FROM score", "expected a query, such as SELECT"),
        ("SET a = 1", "expected a query, such as SELECT"),
    ],
)
def test_spark_runs_only_queries(spark: SparkSession, small: pathlib.Path, sql: str, message: str) -> None:
    with pytest.raises(FleetError, match=re.escape(message)):
        ask_spark(spark, sql, str(small))
    assert ask_spark(spark, "DESCRIBE score", str(small)).num_rows == 3


def test_a_table_of_nothing_has_its_heading() -> None:
    assert table_text(pa.table({"a": pa.array([], pa.int64()), "b": pa.array([], pa.string())})) == "a  b\n"
