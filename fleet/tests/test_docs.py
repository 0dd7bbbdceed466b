# SPDX-License-Identifier: Apache-2.0
"""The examples of docs/fleet.md and of the questions, compared with what the demo's dataset answers.

    UPDATE=yes scripts/test-fleet tests/test_docs.py

writes what the commands print into the page and into the questions.
"""

import os
import pathlib
import re
import subprocess
import sys

import pytest

from algdata_fleet.ask import ask_duckdb, questions
from algdata_fleet.load import Summary
from algdata_fleet.output import table_text
from conftest import FLEET

PAGE = FLEET.parent / "docs/fleet.md"
QUESTIONS = FLEET / "src/algdata_fleet/questions"
BLOCK = re.compile(r"(?<=^```console\n).*?(?=^```$)", re.M | re.S)
EXAMPLE_ROWS = 4


def compare(path: pathlib.Path, fresh: str) -> None:
    if os.environ.get("UPDATE"):
        path.write_text(fresh)
    assert path.read_text().splitlines() == fresh.splitlines()


@pytest.mark.parametrize("name", list(questions()))
def test_the_example_of_a_question(name: str, dataset: tuple[pathlib.Path, Summary]) -> None:
    path = QUESTIONS / f"{name}.sql"
    question = questions()[name]
    rows = table_text(ask_duckdb(question.sql, str(dataset[0]), EXAMPLE_ROWS)).splitlines()
    comment = [question.title, "", *question.explanation.splitlines(), "", *rows]
    lines = [f"-- {line}".rstrip() for line in comment]
    compare(path, "\n".join([*lines, question.sql]) + "\n")


def test_the_page(dataset: tuple[pathlib.Path, Summary], tmp_path: pathlib.Path) -> None:
    (tmp_path / "dataset").symlink_to(dataset[0])
    program = tmp_path / "algdata-fleet"
    program.write_text(f'#!/bin/sh\nexec {sys.executable} -m algdata_fleet "$@"\n')
    program.chmod(0o755)

    def printed(block: re.Match[str]) -> str:
        commands = [line[2:] for line in block[0].splitlines() if line.startswith("$ ")]
        outputs = (run(command, tmp_path) for command in commands)
        return "".join(f"$ {command}\n{output}" for command, output in zip(commands, outputs, strict=True))

    fresh = BLOCK.sub(printed, PAGE.read_text())
    assert "$ algdata-fleet" in fresh
    compare(PAGE, fresh)


def run(command: str, directory: pathlib.Path) -> str:
    environment = {**os.environ, "PATH": f"{directory}:{os.environ['PATH']}"}
    done = subprocess.run(
        ["bash", "-c", command],
        cwd=directory,
        env=environment,
        text=True,
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
    )
    return done.stdout
