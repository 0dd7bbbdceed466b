#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Counts the instructions of each operation, for the module and for the C library's formatted calls.

    instructions.py PROGRAM                  prints the table, per record
    instructions.py PROGRAM --budget FILE    also compares with a budget: status 1 if exceeded
    instructions.py PROGRAM --arm            counts a build for ARM under qemu, only rows of up to 128 records

On the build machine, valgrind counts. If it is missing, the status is 77, for skipped.
Under qemu, which logs one line for each instruction, the count of a call is the
difference between a run with two calls and a run with one.
"""
import argparse
import pathlib
import shutil
import subprocess
import sys
import tempfile

ARM_RECORDS = 128


def lines_of(*command):
    done = subprocess.run(list(map(str, command)), check=True, stdout=subprocess.PIPE, text=True)
    return done.stdout.splitlines()


def count_by_valgrind(program):
    """Instructions by (kind, operation, records, side), from one run for all rows."""
    with tempfile.TemporaryDirectory() as directory:
        out = pathlib.Path(directory, "out")
        rows = lines_of("valgrind", "-q", "--tool=callgrind", "--collect-atstart=no",
                        "--toggle-collect=measured", "--dump-after=measured", f"--callgrind-out-file={out}",
                        program, directory)
        return {tuple(row.split()): total(f"{out}.{number}") for number, row in enumerate(rows, 1)}


def total(dump):
    with open(dump) as lines:
        return next(int(line.split()[1]) for line in lines if line.startswith("totals:"))


def count_by_qemu(program):
    with tempfile.TemporaryDirectory() as directory:
        rows = [tuple(row.split()) for row in lines_of("qemu-arm-static", program, directory)]
        return {row: traced(program, directory, number, 2) - traced(program, directory, number, 1)
                for number, row in enumerate(rows) if int(row[2]) <= ARM_RECORDS}


def traced(program, directory, row, times):
    """Instructions of one run under qemu. Its options make each instruction a block that is logged."""
    run = subprocess.Popen(["qemu-arm-static", "-singlestep", "-d", "exec,nochain", "-D", "/dev/stdout",
                            program, directory, str(row), str(times)], stdout=subprocess.PIPE)
    counted = subprocess.run(["grep", "-c", "^Trace"], stdin=run.stdout, stdout=subprocess.PIPE, check=True)
    if run.wait() != 0:
        sys.exit(f"instructions.py: row {row} failed under qemu")
    return int(counted.stdout)


def pairs(counts):
    """(kind, operation, records, instructions per record of the module, and of the formatted calls)."""
    for (kind, operation, records, side), count in counts.items():
        if side == "module":
            other = counts[kind, operation, records, "formatted"]
            yield kind, operation, int(records), count / int(records), other / int(records)


def table(rows):
    lines = ["| Records | Operation | Number | Module | Formatted calls | Ratio |",
             "|---|---|--:|--:|--:|--:|"]
    lines += [f"| {kind} | {operation} | {records} | {module:.0f} | {other:.0f} | {other / module:.2f} |"
              for kind, operation, records, module, other in rows]
    return "\n".join(lines)


def breaches(rows, path, compiler):
    """The operations above the budget. One without a row there has a budget of 0."""
    column = 4 if "Clang" in compiler else 3
    budget = [line.split() for line in path.read_text().splitlines()]
    limits = {tuple(row[:3]): int(row[column]) for row in budget if row and not row[0].startswith("#")}
    for kind, operation, records, module, _ in rows:
        limit = limits.get((kind, operation, str(records)), 0)
        if module > limit:
            yield f"{kind} {operation} {records}: {module:.0f} instructions per record, at most {limit}"


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", type=pathlib.Path)
    parser.add_argument("--budget", type=pathlib.Path)
    parser.add_argument("--compiler", default="GNU", help="the compiler of the program, by its name in CMake")
    parser.add_argument("--arm", action="store_true")
    options = parser.parse_args()
    tool = "qemu-arm-static" if options.arm else "valgrind"
    if shutil.which(tool) is None:
        print(f"instructions: skipped, {tool} is not installed")
        return 77
    rows = list(pairs((count_by_qemu if options.arm else count_by_valgrind)(options.program.resolve())))
    print(table(rows))
    past = list(breaches(rows, options.budget, options.compiler)) if options.budget else []
    for breach in past:
        print(f"past the budget: {breach}")
    return 1 if past else 0


if __name__ == "__main__":
    sys.exit(main())
