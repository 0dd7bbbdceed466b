#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Checks that what several places have to name is named in each of them.

    completeness.py ROOT            prints what a place does not name; 1 if there is any
    completeness.py ROOT --forget   leaves out one name after the other, and fails if that is not noticed

Checked are the functions of the interface, the members of the records, the
kinds of files, the families, the example files, and the tests that the pages cite.
docs/adding-a-family.md says where each of them belongs.
"""
import re
import sys
from pathlib import Path

READ = ("CMakeLists.txt", "README.md", "alg/*.h", "alg/dataInterface/families/*.cpp", "docs/*.md",
         "examples/mesh_round/*.cpp", "formats/*.h", "fuzz/*Fuzz.cpp", "fuzz/CMakeLists.txt",
         "fuzz/makeSeeds.py", "tests/*Test.cpp", "tests/CMakeLists.txt", "tests/algdata/*.cpp",
         "tests/algdata/golden/*.cmd", "tests/algdata/good/*.txt", "tests/durable/*.cpp",
         "tests/faults/*.cpp", "tests/faults/recordFiles.h", "tests/formats/*.cpp")


def load(root):
    return {str(path.relative_to(root)): path.read_text()
            for pattern in READ for path in sorted(root.glob(pattern))}


# ---- What the module has -----------------------------------------------------


def stems(texts, directory, ending):
    pattern = re.compile(rf"{re.escape(directory)}/(\w+){re.escape(ending)}")
    return [found[1] for path in texts if (found := pattern.fullmatch(path))]


def without_comments(text):
    return re.sub(r"/\*.*?\*/", " ", text, flags=re.S)


def structures_of(texts):
    """The members of every record, as (type, name)."""
    header = without_comments(texts["alg/algDataInterfaceStruct.h"])
    return {name: re.findall(r"^\s*(\w+) (\w+)(?:\[[^;]*)?;", body, re.M)
            for name, body in re.findall(r"typedef struct (\w+) \{(.*?)\n\}", header, re.S)}


def values_of(structures, record):
    """The names of the values in a record, those of the records in it included."""
    for kind, name in structures[record]:
        if kind in structures:
            yield from values_of(structures, kind)
        else:
            yield name


def sections_of(texts):
    """(title, comments, declarations) of each part of the header."""
    parts = re.split(r"/\* ==== (.*?) =+ \*/", texts["alg/dataInterface.h"])
    for title, text in zip(parts[1::2], parts[2::2]):
        yield title, " ".join(re.findall(r"/\*.*?\*/", text, re.S)), without_comments(text)


FUNCTION = r"^(?:bool|int|void|uint16_t) (\w+)\("
FUNCTION_OF_A_FILE = FUNCTION + r"const char\* path\b[^;]*"
UPDATE = r"^bool (\w*(?:[Uu]pdat|[Aa]ppend|[Dd]elete)\w*)\("
READER = r"^(?:bool|int) (\w+Reader\w*)\("
FUNCTION_THAT_WRITES = FUNCTION_OF_A_FILE.replace(r"(\w+)", r"(?!\w*(?:Counter|Reader))(\w+)")


# ---- What a place does not name ------------------------------------------------


def is_named(name, text):
    return re.search(rf"\b{name}\b", text) is not None


def missing_functions(texts):
    header = without_comments(texts["alg/dataInterface.h"])
    places = (("README.md", FUNCTION), ("examples/mesh_round", FUNCTION), ("fuzz", FUNCTION_OF_A_FILE),
              ("tests/faults/faultSweepTest.cpp", FUNCTION_OF_A_FILE),
              ("tests/faults/operations.cpp", READER), ("tests/faults/operations.cpp", UPDATE),
              ("tests/faults/longRunTest.cpp", UPDATE),
              ("tests/durable/changes.cpp", FUNCTION_THAT_WRITES))
    for place, pattern in places:
        named = " ".join(text for path, text in texts.items() if path.startswith(place))
        for function in re.findall(pattern, header, re.M):
            if not is_named(function, named):
                yield f"{place} does not name the function {function}"


def missing_members(texts):
    structures = structures_of(texts)
    layout = texts["tests/recordLayoutTest.cpp"]
    for record, members in structures.items():
        if f"EXPECT_RECORD({record}," not in layout:
            yield f"tests/recordLayoutTest.cpp does not test the record {record}"
        for _, member in members:
            if f"EXPECT_FIELD({record}, {member}," not in layout:
                yield f"tests/recordLayoutTest.cpp does not test {record}.{member}"

    for title, comments, declarations in sections_of(texts):
        of_files = " ".join(found[0] for found in re.finditer(FUNCTION_OF_A_FILE, declarations, re.M))
        for record in structures:
            if not re.search(rf"\b{record}\*", of_files):
                continue
            for value in values_of(structures, record):
                if not is_named(value, comments):
                    yield f"alg/dataInterface.h, '{title}', does not name {value} of {record}"


def wrong_counts(texts):
    """The numbers of fields that the header states, against the generated tables of the page."""
    blocks = re.findall(r"<!-- begin: [\w-]+ -->(.*?)<!-- end", texts["docs/file-formats.md"], re.S)
    for title, comments, declarations in sections_of(texts):
        counts = {count for block in blocks for count in re.findall(r"(\d+) fields", block)
                  if any(is_named(reader, declarations) for reader in re.findall(r"`(\w+Reader\w*)`", block))}
        for count in re.findall(r"(\d+) fields", comments):
            if count not in counts:
                yield f"alg/dataInterface.h, '{title}', states {count} fields, the page does not"


def missing_kinds(texts):
    """By their names in the tests that cut, damage and compare a file of every kind."""
    names = re.search(r"enum Kind \{(.*?)\bKINDS\b", texts["tests/faults/recordFiles.h"], re.S)[1]
    for place in ("tests/faults/tornFilesTest.cpp", "tests/formats/tableTest.cpp"):
        for kind in re.findall(r"\w+", names):
            if not is_named(kind, texts[place]):
                yield f"{place} does not name the kind {kind}"


def missing_families(texts):
    described = stems(texts, "formats", ".h")
    for family in stems(texts, "alg/dataInterface/families", ".cpp"):
        wanted = [(f"tests/{family}Test.cpp", "tests/CMakeLists.txt", family)]
        if family in described:
            wanted.append((f"fuzz/{family}Fuzz.cpp", "fuzz/CMakeLists.txt", family))
            if not is_named(family, texts["fuzz/makeSeeds.py"]):
                yield f"fuzz/makeSeeds.py does not name {family}"
        for source, build, name in wanted:
            if source not in texts:
                yield f"{source} is missing"
            if not is_named(name, texts[build]):
                yield f"{build} does not name {name}"
        if f"families/{family}.cpp" not in texts["CMakeLists.txt"]:
            yield f"CMakeLists.txt does not name {family}.cpp"


def missing_cases(texts):
    """The cases of algdata that every example file has."""
    for example in stems(texts, "tests/algdata/good", ".txt"):
        for case in ("show", "show-loaded", "export-json", "export-ndjson", "export-csv", "import"):
            if f"tests/algdata/golden/{case}-{example}.cmd" not in texts:
                yield f"tests/algdata/golden/{case}-{example}.cmd is missing"


def missing_tests(texts):
    tests = " ".join(text for path, text in texts.items() if path.startswith("tests/"))
    known = {f"{suite}.{name}" for suite, name in re.findall(r"\bTEST(?:_F)?\((\w+), (\w+)\)", tests)}
    for page, text in texts.items():
        if page.endswith(".md"):
            for cited in re.findall(r"`([A-Z]\w+\.\w+)`", text):
                if not cited.endswith((".md", ".txt")) and cited not in known:
                    yield f"{page} cites {cited}, which is no test"


def faults_in(texts):
    return [*missing_functions(texts), *missing_members(texts), *wrong_counts(texts), *missing_kinds(texts),
            *missing_families(texts), *missing_cases(texts), *missing_tests(texts)]


# ---- Whether an omission is noticed --------------------------------------------

# One of each sort. Without a name the whole file is left out.
OMISSIONS = (
    ("README.md", "scoreInfoCntReader"),
    ("examples/mesh_round", "mimoSync"),
    ("tests/faults/faultSweepTest.cpp", "touchFile"),
    ("fuzz/", "emptyTimeDelayFile"),
    ("tests/faults/operations.cpp", "scoreInfoCntReader"),
    ("tests/faults/operations.cpp", "updataSingleApRankInfo"),
    ("tests/faults/longRunTest.cpp", "scanningInfoDeleter"),
    ("tests/durable/changes.cpp", "scanningInfoDeleter"),
    ("tests/faults/tornFilesTest.cpp", "TIME_DELAY"),
    ("tests/formats/tableTest.cpp", "TIME_DELAY"),
    ("alg/dataInterface.h", "delayTime"),
    ("docs/file-formats.md", " fields per record"),
    ("tests/recordLayoutTest.cpp", "EXPECT_RECORD(ScoreInfo,"),
    ("tests/recordLayoutTest.cpp", "EXPECT_FIELD(TimeDelayInfo, delayTime,"),
    ("CMakeLists.txt", "families/timeDelayInfo.cpp"),
    ("tests/CMakeLists.txt", "timeDelayInfo"),
    ("tests/timeDelayInfoTest.cpp", None),
    ("fuzz/CMakeLists.txt", "timeDelayInfo"),
    ("fuzz/timeDelayInfoFuzz.cpp", None),
    ("fuzz/makeSeeds.py", "timeDelayInfo"),
    ("tests/algdata/golden/import-timeDelay.cmd", None),
    ("tests/faults/growthTest.cpp", "TEST(Growth, updates)"),
)


def forget(texts):
    """The number of omissions that are not noticed."""
    before = faults_in(texts)
    unnoticed = 0
    for place, name in OMISSIONS:
        left = {path: text.replace(name, "") if name and path.startswith(place) else text
                for path, text in texts.items() if name or path != place}
        noticed = [fault for fault in faults_in(left) if fault not in before]
        print(f"{place} without {name or 'the file'}: {noticed[0] if noticed else 'NOT NOTICED'}")
        unnoticed += not noticed
    return unnoticed


def main(root, *options):
    texts = load(root)
    if options == ("--forget",):
        return 1 if forget(texts) else 0
    faults = faults_in(texts)
    print("\n".join(faults) or "nothing is missing")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(Path(sys.argv[1]), *sys.argv[2:]))
