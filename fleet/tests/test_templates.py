# SPDX-License-Identifier: Apache-2.0
import datetime
import time

import pytest

from algdata_fleet import FleetError
from algdata_fleet.templates import Place, Templates, parse_day

DAY = datetime.date(2026, 11, 20)


def place(template: str, path: str, day: datetime.date | None = None) -> object:
    found = Templates([template], day).place(path)
    return found.values if isinstance(found, Place) else found


def test_names_become_columns_after_the_standard_ones() -> None:
    templates = Templates(["{day}/{region}/{home}/*_re_{device}.txt", "{day}/{region}/{home}/*.txt"])
    assert templates.columns == ["home", "snapshot", "device", "firmware", "region"]
    assert templates.place("2026-11-20/north/h1/score_re_0a4e00000002.txt") == Place(
        DAY, ("h1", None, "0a4e00000002", None, "north")
    )
    assert templates.place("2026-11-20/north/h1/score.txt") == Place(DAY, ("h1", None, None, None, "north"))


def test_the_mac_of_a_device_is_in_lower_case_as_in_the_records() -> None:
    template = "{home}/*_re_{device}.txt"
    assert place(template, "H1/score_re_0A4E0000000B.txt", DAY) == ("H1", None, "0a4e0000000b", None)
    assert place(template, "H1/score_re_Attic.txt", DAY) == ("H1", None, "Attic", None)


def test_a_part_is_not_empty_and_has_no_slash() -> None:
    template = "{day}/{home}/*.txt"
    assert place(template, "2026-11-20/h1/.txt") == "no --path matches"
    assert place(template, "2026-11-20/h1/a/b.txt") == "no --path matches"
    assert place(template, "2026-11-20/h\n1/a.txt") == ("h\n1", None, None, None)


def test_the_first_of_two_parts_is_the_shortest() -> None:
    assert place("{day}/{home}-{firmware}/*", "2026-11-20/a-b-c/x") == ("a", None, None, "b-c")


def test_a_name_that_no_file_has_takes_no_time() -> None:
    template = "{home}/*_re_{device}.txt"
    device = "x" * 247
    assert place(template, f"h1/_re_{device}.txt", DAY) == "no --path matches"
    assert place(template, f"h1/a_re_{device[:-1]}.txt", DAY) == ("h1", None, device[:-1], None)
    started = time.monotonic()
    for name in ("a_re_" * 20_000, f"a_re_{device}.txt"):
        assert place(template, f"h1/{name}", DAY) == "a name in its path has more than 255 characters"
    assert time.monotonic() - started < 1


def test_a_name_that_occurs_twice_has_one_value() -> None:
    template = "{day}/{home}/{home}.txt"
    assert place(template, "2026-11-20/h1/h1.txt") == ("h1", None, None, None)
    assert place(template, "2026-11-20/h1/h2.txt") == "no --path matches"


def test_the_day_is_that_of_the_snapshot_or_of_the_command() -> None:
    assert Templates(["{home}/{snapshot}/*"]).place("h1/2026-11-20T03:00/x") == Place(
        DAY, ("h1", "2026-11-20T03:00", None, None)
    )
    assert Templates(["{home}/*"], DAY).place("h1/x") == Place(DAY, ("h1", None, None, None))
    assert "has no date since 2000" in str(place("{home}/*", "h1/x"))
    assert "has no date since 2000" in str(place("{day}/{home}/*", "monday/h1/x", DAY))


@pytest.mark.parametrize(
    "text", ["2026-11-31", "20261120", "2026-1-2", "2026-11-20x", "", "٢٠٢٦-11-20", "1999-12-31"]
)
def test_what_is_no_day(text: str) -> None:
    assert parse_day(text) is None


@pytest.mark.parametrize(
    ("template", "why"),
    [
        ("{day}/*.txt", "no {home}"),
        ("{day}/{home}.txt", "in the file's name"),
        ("/{home}/*", "empty or hidden"),
        ("{home}//*", "empty or hidden"),
        ("../{home}/*", "empty or hidden"),
        ("{home}{day}/*", "separated by texts"),
        ("{home}/{_path}", "expected names in braces"),
        ("{home}/{Home}/*", "differ in letter case"),
    ],
)
def test_what_is_no_template(template: str, why: str) -> None:
    with pytest.raises(FleetError, match=why.replace("{", r"\{")):
        Templates([template])


def test_a_shard_states_its_day_and_what_is_a_home() -> None:
    templates = Templates(["{day}/*/{home}/*"])
    assert templates.day_of_start("2026-11-20") == DAY
    assert templates.day_of_start("2026-11-20/s1.tar") == DAY
    assert templates.day_of_start("monday/s1.tar") is None
    assert templates.is_home("2026-11-20/s1/h1")
    assert not templates.is_home("2026-11-20/s1")
