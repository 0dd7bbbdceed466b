#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Prints the rooms of the source tree and which of them uses which, as a DOT graph.

    rooms.py

A room is a directory of sources. It uses another one if one of its files includes a
header of it. Arrows that follow from others are left out. Rooms that use each other share
one box; in the module that is an error.
"""
import os
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
TOPS = {"alg": "The module", "tools/algdata": "algdata", "": "Around the module"}
# The definition of the command line is above all rooms of algdata, the options below them.
PROGRAM = ("usage", "complete", "generate")
INCLUDED = tuple(map(Path, ("alg", ".", "tools/algdata")))  # where the build looks for headers
AROUND = ("formats", "tools/formats", "examples", "tests", "fuzz", "bench")


def sources():
    tops = ("alg", "formats", "tools", "examples", "tests", "fuzz", "bench")
    return [path.relative_to(ROOT) for top in tops for path in sorted((ROOT / top).rglob("*"))
            if path.suffix in (".h", ".cpp", ".c")]


def room_of(path):
    """The directory that stands for a file; None if the picture does not show it."""
    for top in AROUND:
        if path.is_relative_to(top):
            return top
    if path.is_relative_to("tools/algdata"):
        program = len(path.parts) == 3 or (path.parts[2] == "commandline" and path.stem in PROGRAM)
        return "tools/algdata" if program else "/".join(path.parts[:3])
    return str(path.parent) if path.is_relative_to("alg") else None


def uses(files):
    """{room: rooms that it uses}. A header is looked up beside its includer, then where the build looks."""
    known = set(files)
    found = {room: set() for room in map(room_of, files) if room}
    for path in files:
        room = room_of(path)
        if not room:
            continue
        for name in re.findall(r'^#include "(.*?)"', (ROOT / path).read_text(), re.M):
            for base in (path.parent, *INCLUDED):
                header = Path(os.path.normpath(base / name))
                if header in known:
                    other = room_of(header)
                    if other and other != room:
                        found[room].add(other)
                    break
    return found


def reachable(graph, start):
    seen, left = set(), [start]
    while left:
        for room in graph[left.pop()] - seen:
            seen.add(room)
            left.append(room)
    return seen


def condensed(graph):
    """The graph with one box for rooms that use each other. A box is a tuple of rooms."""
    box = {room: tuple(sorted({room} | {other for other in reachable(graph, room)
                                        if room in reachable(graph, other)})) for room in graph}
    return {rooms: {box[other] for room in rooms for other in graph[room]} - {rooms}
            for rooms in sorted(set(box.values()))}


def reduced(graph):
    """The graph without the arrows that follow from others."""
    return {room: {other for other in others
                   if not any(other in reachable(graph, third) for third in others - {other})}
            for room, others in graph.items()}


def dot(graph):
    lines = ["digraph rooms {", "    rankdir = TB; compound = true; ranksep = 0.4; nodesep = 0.2;",
             '    node [shape = box, style = "rounded,filled", fillcolor = white, fontname = Helvetica,',
             "          fontsize = 11, height = 0.3];",
             "    edge [color = gray40, arrowsize = 0.6];"]
    for number, (top, title) in enumerate(TOPS.items()):
        lines += [f"    subgraph cluster_{number} {{",
                  f'        label = "{title}"; style = "rounded,filled"; fillcolor = gray95; color = gray70;',
                  "        fontname = Helvetica;"]
        lines += [f'        "{box[0]}" [label = "{label(box, top)}"];' for box in graph
                  if top_of(box[0]) == top]
        lines += ["    }"]
    lines += [f'    "{box[0]}" -> "{other[0]}";' for box, others in graph.items() for other in sorted(others)]
    return "\n".join([*lines, "}"])


def top_of(room):
    return next(top for top in TOPS if top == "" or room == top or room.startswith(top + "/"))


def label(box, top):
    names = {top: "main", "alg": "public headers"}
    short = [room.removeprefix(top + "/").removeprefix("dataInterface/") for room in box]
    return "\\n".join(names.get(room, other) for room, other in zip(box, short))


def main():
    graph = condensed(uses(sources()))
    for box in graph:
        if len(box) > 1 and box[0].startswith("alg"):
            sys.exit(f"rooms of the module use each other: {', '.join(box)}")
    print(dot(reduced(graph)))


if __name__ == "__main__":
    main()
