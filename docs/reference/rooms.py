#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Prints the rooms of the source tree and which of them uses which, as a DOT graph.

    rooms.py

A room is a directory of sources. It uses another one if one of its files includes a
header of it. Arrows that follow from others are left out. Rooms that use each other are an
error.
"""
import os
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
TOPS = {"alg": "The module", "tools/algdata": "algdata", "": "Around the module"}
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
        return "/".join(path.parts[:3]) if len(path.parts) > 3 else "tools/algdata"
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


def circles(graph):
    """Rooms that use each other, each circle once."""
    found = {tuple(sorted({room} | {other for other in reachable(graph, room)
                                    if room in reachable(graph, other)})) for room in graph}
    return sorted(rooms for rooms in found if len(rooms) > 1)


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
        lines += [f'        "{room}" [label = "{label(room, top)}"];' for room in sorted(graph)
                  if top_of(room) == top]
        lines += ["    }"]
    lines += [f'    "{room}" -> "{other}";' for room in sorted(graph) for other in sorted(graph[room])]
    return "\n".join([*lines, "}"])


def top_of(room):
    return next(top for top in TOPS if top == "" or room == top or room.startswith(top + "/"))


def label(room, top):
    names = {top: "main", "alg": "public headers"}
    return names.get(room, room.removeprefix(top + "/").removeprefix("dataInterface/"))


def main():
    graph = uses(sources())
    if found := circles(graph):
        sys.exit("\n".join(f"rooms use each other: {', '.join(rooms)}" for rooms in found))
    print(dot(reduced(graph)))


if __name__ == "__main__":
    main()
