#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Compares the message tables of dataInterface.h with the sources, both ways.

For each function of the interface, the messages that its comment lists must be
those that the sources emit under its name: the same levels and the same texts.
A message's name in the sources is a literal, __func__, or a variable: then it is
the variable's initial value, or what the callers of the function pass for it.
The tests' own list of messages must hold the same ones.

    messageTables.py ALG-DIRECTORY TESTS-MESSAGES-HEADER
"""
import collections
import re
import sys
from pathlib import Path

PREFIX = "libzo: [%s:%d]: "
LEVELS = {"LOG_ERROR": "E", "LOG_INFO": "I", "3": "E", "5": "N", "6": "I"}
STRING = r'"(?:\\.|[^"\\\n])*"'


def arguments(text, start):
    """The arguments of the call whose opening bracket is at `start`, split at its commas."""
    found, begin, depth, at = [], start + 1, 0, start
    while True:
        literal = re.compile(STRING).match(text, at)
        if literal:
            at = literal.end()
            continue
        if text[at] in "([{":
            depth += 1
        elif text[at] in ")]}":
            depth -= 1
        if depth == 0 or (depth == 1 and text[at] == ","):
            found.append(text[begin:at].strip())
            begin = at + 1
        if depth == 0:
            return found
        at += 1


def joined(literals):
    return "".join(piece[1:-1] for piece in re.findall(STRING, literals))


# ---- The tables ----------------------------------------------------------------

def tables(header):
    """{function: {(level, text)}} of every comment before a declaration."""
    found = {}
    for comment, declared in re.findall(r"/\*((?:(?!\*/).)*)\*/\n((?:(?!/\*)[^;{}])*);", header, re.S):
        name = re.search(r"(\w+)\((?:.|\n)*\)$", declared)
        if not name:
            continue
        lines = re.findall(rf"^ \*   ([EIN]) ({STRING})(.*)$", comment, re.M)
        listed = [(level, text[1:-1], remark) for level, text, remark in lines]
        same = re.search(r"(\w+)\(\).*the same messages under its own name", comment, re.S)
        if same:
            found[name.group(1)] = set(found[same.group(1)])
            continue
        names = re.search(r"function name is\s+(\w+)\s+or\s+(\w+)", re.sub(r"\n \*", "\n", comment))
        if names:  # two functions behind one; what is remarked as the FAP's is the first one's
            found[names.group(1)] = {(level, text) for level, text, _ in listed}
            found[names.group(2)] = {(level, text) for level, text, remark in listed
                                     if "FAP only" not in remark}
        elif listed:
            found[name.group(1)] = {(level, text) for level, text, _ in listed}
    return found


# ---- The sources ---------------------------------------------------------------

Function = collections.namedtuple("Function", "name parameters body")
Emitted = collections.namedtuple("Emitted", "level text name function place")


def functions(source):
    """The functions of a source: they begin and end in the first column."""
    heads = r"^(?!(?:struct|enum|union|class|namespace|using|extern)\b)[A-Za-z][^;{}#=]*?\b(\w+)(\()"
    for match in re.finditer(heads, source, re.M):
        start = match.start(2)
        depth, at = 0, start
        while True:
            depth += {"(": 1, ")": -1}.get(source[at], 0)
            at += 1
            if depth == 0:
                break
        body = re.compile(r"\s*\{(?:[^\n]*\}\n|.*?^\})", re.S | re.M).match(source, at)
        if body:
            parameters = [re.sub(r"\[.*", "", one).split()[-1].lstrip("*&") if one else ""
                          for one in arguments(source, start)]
            yield Function(match.group(1), parameters, body.group())


def variable(body, name):
    """The text that a local variable of characters begins with, or None."""
    match = re.search(rf"\bchar\*?(?: const)? {name}(?:\[\])? = ({STRING})", body)
    return match.group(1)[1:-1] if match else None


class Sources:
    def __init__(self, directory):
        texts = {path: path.read_text() for path in sorted(directory.rglob("*"))
                 if path.suffix in (".cpp", ".h")}
        self.all = [function for text in texts.values() for function in functions(text)]
        self.calls = sum(len(re.findall(r"\blibzo: \[", text)) for path, text in texts.items()
                         if path.suffix == ".cpp")

    def emitted(self):
        for function in self.all:
            for match in re.finditer(r"\b(LOG_ERROR|LOG_INFO|ALG_LOG_FROM)(\()", function.body):
                values = arguments(function.body, match.start(2))
                level = LEVELS[values.pop(0) if match.group(1) == "ALG_LOG_FROM" else match.group(1)]
                text = joined(values[0])
                if not text.startswith(PREFIX):
                    sys.exit(f"a message without the prefix in {function.name}: {text}")
                yield level, text[len(PREFIX):], values[1], function

    def names(self, value, function, seen=()):
        """The names that a value in a function may stand for."""
        if value.startswith('"'):
            return {value[1:-1]}
        if value == "__func__":
            return {function.name}
        known = variable(function.body, value)
        if known is not None:
            return {known}
        if value not in function.parameters or (function.name, value) in seen:
            sys.exit(f"who logs as '{value}' in {function.name}?")
        at = function.parameters.index(value)
        found = set()
        for caller in self.all:
            for match in re.finditer(rf"\b{function.name}(?:<[^<>()]*>)?(\()", caller.body):
                passed = arguments(caller.body, match.start(1))
                if len(passed) > at:
                    found |= self.names(passed[at], caller, seen + ((function.name, value),))
        return found


# ---- The tests' list -----------------------------------------------------------

def stated(header):
    """{function: {(level, text)}} of the constants that the tests use, on the file "f"."""
    found = {}
    for literals in re.findall(rf"\[\] =\s+((?:{STRING}\s*)+);", header):
        level, name, text = re.match(r"([EI]) (\w+): (.*)", joined(literals)).groups()
        found.setdefault(name, set()).add((level, text))
    return found


def on_file_f(text):
    """A listed text as the tests state it: the path is "f", any other value is '*'."""
    others = "%d" in text
    return re.sub("%[sd]", "*", text) if others else text.replace("%s", "f")


# ---- The comparison ------------------------------------------------------------

def main():
    directory = Path(sys.argv[1])
    in_tests = stated(Path(sys.argv[2]).read_text())
    listed = tables((directory / "dataInterface.h").read_text())
    sources = Sources(directory)
    emitted, count = {}, 0
    for level, text, value, function in sources.emitted():
        count += 1
        for name in sources.names(value, function):
            emitted.setdefault(name, set()).add((level, text))
    wrong = []
    for name in sorted(set(listed) | set(emitted)):
        for level, text in sorted(emitted.get(name, set()) - listed.get(name, set())):
            wrong.append(f'{name}() emits, and dataInterface.h does not list: {level} "{text}"')
        for level, text in sorted(listed.get(name, set()) - emitted.get(name, set())):
            wrong.append(f'dataInterface.h lists for {name}(), and nothing emits: {level} "{text}"')
    for name in sorted(set(listed) | set(in_tests)):
        wanted = {(level, on_file_f(text)) for level, text in listed.get(name, set()) if level != "N"}
        for level, text in sorted(in_tests.get(name, set()) ^ wanted):
            wrong.append(f'the tests and dataInterface.h differ for {name}(): {level} "{text}"')
    if count != sources.calls:
        wrong.append(f"{sources.calls} messages in the sources, {count} of them in functions that were found")
    messages = sum(map(len, listed.values()))
    print("\n".join(wrong) or f"{count} places emit the {messages} messages of {len(listed)} functions")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
