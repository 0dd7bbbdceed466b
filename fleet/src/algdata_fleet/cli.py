# SPDX-License-Identifier: Apache-2.0
"""The command algdata-fleet."""

import argparse
import datetime
import os
import shutil
import signal
import sys
import traceback

from py4j.protocol import Py4JError
from pyspark.errors import PySparkException
from pyspark.sql import SparkSession

from algdata_fleet import FleetError, __version__
from algdata_fleet.ask import ask_duckdb, ask_spark, columns_of, find_question, questions, tables_of
from algdata_fleet.load import Request, load, prepare
from algdata_fleet.output import FORMATS, printable, write
from algdata_fleet.reconcile import EMPTY, LOADED, OTHER, REFUSED
from algdata_fleet.shards import HOMES_PER_SHARD
from algdata_fleet.spark import reason_of, session
from algdata_fleet.templates import parse_day
from algdata_fleet.tool import Limits

WELL, FINDINGS, UNUSABLE = 0, 1, 2
READER_GONE = 128 + signal.SIGPIPE


def say(text: str) -> None:
    print(f"algdata-fleet: {text}", file=sys.stderr, flush=True)


def say_some(lines: list[str], count: int, table: str) -> None:
    """The first ones, of a number that can be large."""
    shown = lines[:10]
    for line in shown:
        say(line)
    if count > len(shown):
        say(f"and {count - len(shown)} more, in the table {table}")


def _day(text: str) -> datetime.date:
    day = parse_day(text)
    if day is None:
        raise argparse.ArgumentTypeError(f"expected YYYY-MM-DD, found '{text}'")
    return day


def _positive(text: str) -> int:
    if not text.isdecimal() or int(text) == 0:
        raise argparse.ArgumentTypeError(f"expected a whole number of at least 1, found '{text}'")
    return int(text)


def _setting(text: str) -> str:
    if "=" not in text:
        raise argparse.ArgumentTypeError(f"expected KEY=VALUE, found '{text}'")
    return text


def parser() -> argparse.ArgumentParser:
    top = argparse.ArgumentParser(
        prog="algdata-fleet",
        description="Loads the record files of many homes into Parquet, and answers questions about them.",
        epilog="Exit status: 0 all well, 1 something was quarantined or refused, 2 the command has failed; "
        "a load has then changed nothing, or says how much.",
    )
    top.add_argument("--version", action="version", version=f"algdata-fleet {__version__}")
    commands = top.add_subparsers(dest="command", required=True, metavar="COMMAND")
    _add_load(commands.add_parser("load", help="reads shards and writes a dataset"))
    _add_ask(commands.add_parser("ask", help="answers a question, in SQL"))
    return top


def _add_spark(command: argparse.ArgumentParser) -> None:
    command.add_argument(
        "--master",
        default=os.environ.get("ALGDATA_FLEET_MASTER", "local[*]"),
        help="the Spark cluster, such as spark://HOST:7077 (default: %(default)s)",
    )
    command.add_argument(
        "--conf",
        metavar="KEY=VALUE",
        type=_setting,
        action="append",
        default=[],
        help="a setting of Spark; may be repeated",
    )


def _add_load(command: argparse.ArgumentParser) -> None:
    limits = Limits()
    command.add_argument(
        "source", metavar="SOURCE", help="directory of the shards, the same on every machine"
    )
    command.add_argument("target", metavar="TARGET", help="directory of the dataset")
    command.add_argument(
        "--path",
        metavar="TEMPLATE",
        action="append",
        required=True,
        help="what the paths below SOURCE mean, such as '{day}/*/{home}/*_re_{device}.txt'; may "
        "be repeated, the first that matches is used",
    )
    command.add_argument(
        "--day",
        type=_day,
        metavar="DATE",
        action="append",
        default=[],
        help="a night to load that only the paths in the shards state; may be repeated; if it is the only "
        "one, also that of files without a date",
    )
    command.add_argument(
        "--algdata",
        default=os.environ.get("ALGDATA", "algdata"),
        help="the command algdata on every machine (default: %(default)s)",
    )
    command.add_argument(
        "--homes-per-shard",
        type=_positive,
        default=HOMES_PER_SHARD,
        metavar="N",
        help="directories of homes that are read together (default: %(default)s)",
    )
    command.add_argument(
        "--shard-seconds",
        type=_positive,
        default=limits.seconds,
        metavar="N",
        help="limit of time for each command on a shard (default: %(default)s)",
    )
    command.add_argument(
        "--shard-megabytes",
        type=_positive,
        default=limits.megabytes,
        metavar="N",
        help="limit of memory for each command on a shard (default: %(default)s)",
    )
    command.add_argument(
        "--shard-files",
        type=_positive,
        default=limits.files,
        metavar="N",
        help="most files of a shard (default: %(default)s)",
    )
    _add_spark(command)
    command.set_defaults(run=run_load)


def _add_ask(command: argparse.ArgumentParser) -> None:
    command.add_argument("target", metavar="DATASET", help="what `algdata-fleet load` has written")
    command.add_argument(
        "question", metavar="NAME|FILE.sql", nargs="?", help="without it, the names are listed"
    )
    command.add_argument("--explain", action="store_true", help="shows what a question answers, and its SQL")
    command.add_argument("--columns", action="store_true", help="lists the columns of all tables")
    command.add_argument("-e", "--query", metavar="SQL", help="the question itself")
    command.add_argument("-f", "--format", choices=FORMATS, default="table")
    command.add_argument("-o", "--output", metavar="FILE", help="appears whole or not at all")
    command.add_argument("--limit", type=_positive, metavar="N", help="the first N rows")
    command.add_argument(
        "--engine",
        choices=("spark", "duckdb"),
        default="spark",
        help="duckdb answers on this machine alone (default: %(default)s)",
    )
    _add_spark(command)
    command.set_defaults(run=run_ask)


def start_spark(options: argparse.Namespace) -> SparkSession:
    try:
        return session(f"algdata-fleet {options.command}", options.master, options.conf)
    except (Py4JError, PySparkException) as error:
        raise FleetError(
            f"Spark cannot start: {reason_of(error)}; expected Java 17, and a --master and --conf that it "
            "understands"
        ) from None


def list_questions() -> int:
    known = questions().values()
    width = max(len(question.name) for question in known)
    for question in known:
        print(f"{question.name.ljust(width)}  {question.title}")
    return WELL


def explain(name: str | None) -> int:
    question = questions().get(name or "")
    if question is None:
        raise FleetError(f"--explain: expected one of {', '.join(questions())}")
    example = question.example.replace("\n", "\n    ")
    print(f"{question.title}\n\n{question.explanation}\n\n    {example}\n\n{question.sql}")
    return WELL


def run_ask(options: argparse.Namespace) -> int:
    if options.explain:
        return explain(options.question)
    tables_of(options.target)  # before an engine starts
    wanted = (options.question is not None) + (options.query is not None) + options.columns
    if wanted == 0:
        return list_questions()
    if wanted > 1:
        raise FleetError("expected one of a question, -e and --columns")
    if options.columns:
        write(columns_of(options.target), options.format, options.output)
        return WELL
    sql = find_question(options.question) if options.query is None else options.query
    if options.engine == "duckdb":
        rows = ask_duckdb(sql, options.target, options.limit)
    else:
        with start_spark(options) as spark:
            rows = ask_spark(spark, sql, options.target, options.limit)
    write(rows, options.format, options.output)
    return WELL


def _nights(days: list[datetime.date]) -> str:
    if len(days) > 3:
        return f"{len(days)} nights from {days[0]} to {days[-1]}"
    return ", ".join(map(str, days)) or "no night"


def run_load(options: argparse.Namespace) -> int:
    algdata = shutil.which(options.algdata)
    if algdata is None:
        raise FleetError(f"{options.algdata}: not found; install algdata on every machine, or use --algdata")
    limits = Limits(options.shard_seconds, options.shard_megabytes, options.shard_files)
    request = Request(
        options.source,
        options.target,
        options.path,
        tuple(options.day),
        os.path.abspath(algdata),
        limits,
        options.homes_per_shard,
    )
    plan = prepare(request)
    if not plan.found.shards and not plan.found.days:
        say(
            f"{options.source}: no shards and no directory of a night, so nothing was changed; is it mounted?"
        )
        return FINDINGS
    say(f"{len(plan.found.shards)} shards in {options.source}")
    with start_spark(options) as spark:
        summary = load(spark, plan)
    refused = summary.files(REFUSED)
    shards = [
        f"quarantined {printable(report.shard.name)}: {printable(report.quarantined)}"
        for report in summary.quarantined
    ]
    say_some(shards, len(shards), "quarantine")
    for day in summary.kept:
        say(f"{day}: all its shards are quarantined, so its old partitions stay")
    files = [
        f"refused {printable(path)}: {printable(reason)}"
        for report in summary.reports
        for path, reason in report.refused
    ]
    say_some(files, refused, "file")
    print(
        f"{summary.files(LOADED, EMPTY, OTHER, REFUSED)} files: {summary.files(LOADED)} loaded, "
        f"{summary.files(EMPTY)} empty, {summary.files(OTHER)} no record files, {refused} refused; "
        f"{summary.records} records; {len(summary.reports)} shards, {len(summary.quarantined)} quarantined; "
        f"{summary.partitions} partitions of {_nights(summary.days)}"
    )
    return FINDINGS if refused or summary.quarantined else WELL


def main(arguments: list[str] | None = None) -> int:
    options, rest = parser().parse_known_args(arguments)
    if options.command == "ask" and options.question is None and len(rest) == 1 and rest[0][:1] != "-":
        options.question = rest.pop()  # argparse does not find it after an option
    if rest:
        help_of = f"`algdata-fleet {options.command} --help` lists the options"
        parser().error(f"unrecognized arguments: {' '.join(rest)}; {help_of}")
    if sys.stdout is None:
        say("the standard output is closed")
        return UNUSABLE
    try:
        status = int(options.run(options))
        sys.stdout.flush()
        return status
    except BrokenPipeError:
        # What reads the output, such as `head`, has ended. Python must not write the rest at its end.
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
        return READER_GONE
    except FleetError as error:
        say(str(error))
        return UNUSABLE
    except OSError as error:
        say(f"{error.filename or 'output'}: {error.strerror}")
        return UNUSABLE
    except KeyboardInterrupt:
        return 130
    except Exception:  # Python's own status would be 1, which says that the rest is loaded
        traceback.print_exc()
        return UNUSABLE
