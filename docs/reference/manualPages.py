#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Writes the manual pages of the library and of the record files.

    manualPages.py DIRECTORY DATE

It writes DIRECTORY/man3, with a page for each function, record, setting and table of the
public headers and a page algDataInterface of what holds for all of them, and
DIRECTORY/man5, with a page for each kind of file and a page algdata of all files.

The text comes from the comments of the headers and from docs/file-formats.md, whose
tables come from formats/. Doxygen parses both; any version from Debian 12's on will do.
"""
import re
import shutil
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from pathlib import Path

import doxygen
import roff

FUNCTIONS = "Library Functions Manual"
FILES = "File Formats Manual"
OVERVIEW = "algDataInterface"
COMPILE = "cc host.c $(pkg-config --cflags --libs alg-data-interface)"
OTHERS = ("libzo_log", "g_yra_debug", "peekThr", "peekThrStructure")  # in other headers
HISTORY = doxygen.ROOT / "abi/symbols.map"

# Which of the rules at the top of dataInterface.h hold for what a function does to its file.
RULES = {"Read by": ("{how}",), "Tested by": ("{how}",), "Written by": ("Writing",),
         "Emptied by": ("Writing",), "Created by": ("Writing",), "Updated by": ("Updates", "Writing"),
         "Records appended by": ("Updates", "Writing"), "Records deleted by": ("Updates", "Writing")}


def bold(text):
    return f"\\fB{roff.escaped(text, code=True)}\\fR"


def reference(name, section):
    return f"{bold(name)}({section})"


def references(names):
    """The text of SEE ALSO: names with their sections, sorted by section and name."""
    ordered = sorted(set(names), key=lambda one: (one[1], one[0].lower()))
    return roff.filled(", ".join(reference(*one) for one in ordered))


def first_clause(member):
    """The line of NAME: the first sentence without its details, in lower case."""
    sentence = roff.plain(member.find("briefdescription")).rstrip(".")
    clause = re.match(r".{24}.*?(?=[:;,] | \(|$)|.*", sentence)[0]
    return clause if re.match(r"[A-Z]{2}", clause) else clause[0].lower() + clause[1:]


class Library:
    """What Doxygen has found in the headers and pages."""

    def __init__(self, xml):
        compounds = [ElementTree.parse(path).getroot().find("compounddef")
                     for path in sorted(xml.glob("*.xml")) if path.name not in ("index.xml", "Doxyfile.xml")]
        compounds = [compound for compound in compounds if compound is not None]
        self.groups = [one for one in compounds if one.get("kind") == "group"]
        self.records = [one for one in compounds if one.get("kind") == "struct"]
        self.headers = {one.findtext("compoundname"): one for one in compounds if one.get("kind") == "file"}
        self.formats = next(one for one in compounds if one.findtext("compoundname") == "docs-file-formats")
        self.rules = dict(rule for part in self.interface.iter("variablelist") for rule in roff.entries(part))
        self.since = introduced()
        self.kinds = [Kind(section) for section in self.formats.iter("sect1")
                      if re.match(r"\d", section.findtext("title"))]
        titles = (doxygen.ROOT / "alg/dataInterface.h").read_text()
        self.groups.sort(key=lambda group: titles.index(f"/* ==== {group.findtext('title')} "))

    @property
    def interface(self):
        return self.headers["dataInterface.h"].find("detaileddescription")

    def members(self, compound, *kinds):
        return [member for member in compound.iter("memberdef") if member.get("kind") in kinds]

    def uses_of(self, function):
        """(kind, what the function does to a file of that kind), by the page of the formats."""
        return [(kind, role) for kind in self.kinds for role, names in kind.roles.items()
                if function in names]


class Kind:
    """The section of docs/file-formats.md about a kind of file."""

    def __init__(self, section):
        self.section = section
        listed = [roff.plain(item) for item in next(section.iter("itemizedlist"))]
        self.record, self.name = re.match(r"Record (\w+); algdata kind ([\w-]+)", listed[0]).groups()
        self.how = re.match(r"Read (By line|By field)\.", listed[-1].replace(" by ", " By "))[1]
        self.roles = {}
        for line in listed[1:-1]:
            role, names = re.match(r"(.*? by) (.*)", line).groups()
            self.roles[role] = names.split(" and ")

    @property
    def page(self):
        return f"algdata-{self.name}"


def introduced():
    """{symbol: version} of the list of exported symbols."""
    since = {}
    text = re.sub(r"/\*.*?\*/", "", HISTORY.read_text(), flags=re.S)
    for version, symbols in re.findall(r"_([\d.]+) \{(.*?)\}", text, re.S):
        for symbol in re.findall(r"^\s*(\w+);", symbols, re.M):
            since.setdefault(symbol, version)
    return since


# ---- Pages of section 3 ---------------------------------------------------------------


def described(element):
    """The description. That of a function or a variable begins with one paragraph."""
    brief = roff.blocks(element.find("briefdescription"))
    rest = roff.blocks(element.find("detaileddescription"))
    return brief + (rest[1:] if element.tag == "memberdef" and rest[:1] == [".PP"] else rest)


def synopsis(lines):
    return [".nf", bold("#include <dataInterface.h>"), "", *(bold(line) for line in lines), ".fi"]


def declaration(name):
    """The declaration of a function or a variable, as its header has it."""
    for header in doxygen.HEADERS:
        found = re.search(rf"^\w[\w ]*[ *]{name}\b[^;/]*;", (doxygen.ROOT / "alg" / header).read_text(), re.M)
        if found:
            return found[0].split("\n")
    raise ValueError(f"no header declares {name}")


def simple_section(member, kind, title=None):
    for section in member.find("detaileddescription").iter("simplesect"):
        if section.get("kind") == kind and section.findtext("title") == title:
            return section
    return None


def example(member):
    section = simple_section(member, "par", "Example")
    return roff.blocks(section) if section is not None else []


def returned(member):
    section = simple_section(member, "return")
    if section is None:
        return ["None."] if roff.plain(member.find("type")) == "void" else []
    success = ["Returns true on success."] if roff.plain(section).startswith("Returns false") else []
    return success + roff.blocks(section)[len(success):]


def messages(member):
    section = simple_section(member, "par", "Messages")
    if section is None:
        return ["None of its own."]
    lines = []
    for row in list(section.iter("row"))[1:]:
        text, level, when = (roff.inline_of_entry(entry) for entry in row.iter("entry"))
        lines += roff.tagged(text, roff.filled(level + (f": {when}" if when else "")))
    return [*lines, ".PP", "Each message begins with the name of the function and a source line; see the",
            f"rules in {reference(OVERVIEW, 3)}."]


def arguments(member):
    lines = []
    for item in member.iter("parameteritem"):
        name = item.findtext(".//parametername")
        lines += roff.tagged(f"\\fI{roff.escaped(name)}\\fR",
                             roff.filled(roff.inline(item.find("parameterdescription/para"))))
    return lines or ["None."]


def files(library, member):
    """What a call does to its file: the kind, and the rules for it."""
    name = member.findtext("name")
    paths = [param.findtext("declname") for param in member.iter("param")
             if (param.findtext("declname") or "").startswith("path")]
    if not paths:
        return ["None: the function opens no file."]
    tag = ", ".join(f"\\fI{path}\\fR" for path in paths)
    uses = library.uses_of(name)
    if not uses:
        return roff.tagged(tag, ["A file of any kind."])
    lines = []
    for kind, role in uses:
        lines += roff.tagged(tag, roff.filled(f"A file of kind {bold(kind.name)}, see "
                                              f"{reference(kind.page, 5)}."))
        for rule in RULES[role]:
            title = rule.format(how=kind.how)
            lines += roff.tagged(bold(title), library.rules[title])
    return lines


def see_also(library, group, name):
    around = [(member.findtext("name"), 3) for member in library.members(group, "function", "variable")
              if member.findtext("name") != name] if group is not None else []
    kinds = library.uses_of(name)
    return references([*around, *((kind.page, 5) for kind, _ in kinds),
                       *((kind.record, 3) for kind, _ in kinds), (OVERVIEW, 3)])


def history(library, name, brackets=""):
    version = library.since.get(name)
    return [f"\\fB{name}\\fR{brackets} appeared in version {version}."] if version else []


def function_page(library, group, member):
    name = member.findtext("name")
    roff.arguments = {param.findtext("declname") for param in member.iter("param")}
    notes = described(group) if group is not None else []
    return name, [
        ("NAME", [f"{name} \\- {roff.escaped(first_clause(member))}"]),
        ("SYNOPSIS", synopsis(declaration(name))),
        ("DESCRIPTION", described(member)),
        ("ARGUMENTS", arguments(member)),
        ("RETURN VALUE", returned(member)),
        ("MESSAGES", messages(member)),
        ("FILES", files(library, member)),
        ("NOTES", notes),
        ("EXAMPLES", example(member)),
        ("SEE ALSO", see_also(library, group, name)),
        ("HISTORY", history(library, name, "()")),
    ]


def variable_page(library, group, member):
    """A setting or a table. The host defines some of them."""
    name = member.findtext("name")
    return name, [
        ("NAME", [f"{name} \\- {roff.escaped(first_clause(member))}"]),
        ("SYNOPSIS", synopsis(declaration(name))),
        ("DESCRIPTION", described(member)),
        ("EXAMPLES", example(member)),
        ("SEE ALSO", see_also(library, group, name)),
        ("HISTORY", history(library, name)),
    ]


def record_page(library, record):
    name = record.findtext("compoundname")
    members = library.members(record, "variable")
    lines = [f"    {roff.plain(one.find('type'))} {one.findtext('name')}{one.findtext('argsstring')};"
             for one in members]
    meanings = []
    for one in members:
        text = roff.inline(one.find("briefdescription/para"))
        meanings += roff.tagged(f"\\fI{one.findtext('name')}\\fR", roff.filled(text))
    users = sorted(function for group in library.groups for function in library.members(group, "function")
                   if f"struct{name}" in {ref.get("refid") for ref in function.iter("ref")}
                   for function in [function.findtext("name")])
    kinds = [(kind.page, 5) for kind in library.kinds if kind.record == name]
    return name, [
        ("NAME", [f"{name} \\- {roff.escaped(first_clause(record))}"]),
        ("SYNOPSIS", synopsis([f"typedef struct {name} {{", *lines, f"}} {name};"])),
        ("DESCRIPTION", described(record)),
        ("MEMBERS", meanings),
        ("SEE ALSO", references([*((user, 3) for user in users), *kinds, (OVERVIEW, 3)])),
    ]


def constants(library):
    """The values of all enumerations, in the order of the headers."""
    lines = []
    for header in ("capacities.h", "algDefines.h", "algDataInterfaceStruct.h"):
        for value in library.headers[header].iter("enumvalue"):
            meaning = value.find("briefdescription/para")
            if meaning is not None:
                tag = bold(f"{value.findtext('name')} {value.findtext('initializer')}")
                lines += roff.tagged(tag, roff.filled(roff.inline(meaning)))
    return lines


def overview_page(library):
    groups = []
    for group in library.groups:
        names = [bold(one.findtext("name")) + ("()" if one.get("kind") == "function" else "")
                 for one in library.members(group, "function", "variable")]
        groups += roff.tagged(roff.escaped(group.findtext("title")), roff.filled(", ".join(names)))
    return OVERVIEW, [
        ("NAME", [f"{OVERVIEW} \\- save and load the records of a mesh optimisation algorithm"]),
        ("SYNOPSIS", [*synopsis([]), ".PP", roff.escaped(COMPILE, code=True)]),
        ("DESCRIPTION", described(library.headers["dataInterface.h"])),
        ("FUNCTIONS AND SETTINGS", groups),
        ("CONSTANTS", constants(library)),
        ("SEE ALSO", references([*((name, 3) for name in OTHERS), ("algdata", 5), ("algdata", 1)])),
    ]


def section_3(library):
    for group in library.groups:
        for member in library.members(group, "function"):
            yield function_page(library, group, member)
        for member in library.members(group, "variable"):
            yield variable_page(library, group, member)
    for header in ("algDefines.h", "ai_macros.h"):
        for member in library.members(library.headers[header], "function"):
            yield function_page(library, None, member)
        for member in library.members(library.headers[header], "variable"):
            yield variable_page(library, None, member)
    for record in library.records:
        yield record_page(library, record)
    yield overview_page(library)


# ---- Pages of section 5 ---------------------------------------------------------------


def kind_page(library, kind, title):
    """The section of a kind: what comes before the fields, the fields, an example, notes, damage."""
    parts = {name: [] for name in ("DESCRIPTION", "FIELDS", "EXAMPLES", "NOTES", "DAMAGE")}
    now = "DESCRIPTION"
    for para in kind.section.findall("para"):
        if para.find("table") is not None and now == "DESCRIPTION" or roff.plain(para).endswith("line:"):
            now = "FIELDS"
        elif para.find("programlisting") is not None or para.find("verbatim") is not None:
            now = "EXAMPLES"
        elif para.findtext("bold") == "Damage.":
            now = "DAMAGE"
            para.text = para.find("bold").tail
            para.remove(para.find("bold"))
        elif now == "EXAMPLES":
            now = "NOTES"
        parts[now] += roff.paragraph(para)
    functions = [(name, 3) for names in kind.roles.values() for name in names]
    return kind.page, [
        ("NAME", [f"{kind.page} \\- {title}"]),
        *parts.items(),
        ("SEE ALSO", references([*functions, (kind.record, 3), ("algdata", 5), ("algdata-show", 1),
                                 ("algdata-check", 1)])),
    ]


def all_files_page(library):
    sections = {section.findtext("title"): section for section in library.formats.iter("sect1")}
    return "algdata", [
        ("NAME", ["algdata \\- record files of a mesh optimisation algorithm"]),
        ("DESCRIPTION", roff.blocks(sections["All files"])),
        ("DAMAGE", roff.blocks(sections["Damage"])),
        ("SEE ALSO", references([*((kind.page, 5) for kind in library.kinds), (OVERVIEW, 3),
                                 ("algdata", 1)])),
    ]


def section_5(library):
    tables = [table for table in library.formats.iter("table") if roff.plain(table.find(".//entry")) == "#"]
    rows = [[roff.plain(entry) for entry in row.iter("entry")] for row in tables[0].iter("row")]
    titles = {row[1]: row[2] for row in rows[1:]}
    yield all_files_page(library)
    for kind in library.kinds:
        yield kind_page(library, kind, titles[kind.name])


# ---- The program ------------------------------------------------------------------------


def write(directory, section, subtitle, date, pages):
    """Writes the pages of a section, and removes those that an earlier run has left."""
    shutil.rmtree(directory, ignore_errors=True)
    directory.mkdir(parents=True)
    for name, sections in pages:
        text = roff.page(name, section, subtitle, date, doxygen.version(), sections)
        (directory / f"{name}.{section}").write_text(text)


def main():
    if len(sys.argv) != 3:
        sys.exit("usage: manualPages.py DIRECTORY DATE")
    directory, date = Path(sys.argv[1]), sys.argv[2]
    with tempfile.TemporaryDirectory() as work:
        doxygen.run(Path(work), xml=True, strict=False)
        library = Library(Path(work) / "xml")
    write(directory / "man3", 3, FUNCTIONS, date, section_3(library))
    write(directory / "man5", 5, FILES, date, section_5(library))


if __name__ == "__main__":
    main()
