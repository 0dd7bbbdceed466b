# SPDX-License-Identifier: Apache-2.0
"""Path templates, with the rules of `algdata sql --path`.

A name in braces is a part of the path, `*` is any text; neither contains a slash or is
empty. A path has as many components as its template. A name that occurs twice has the same
value at both places.
"""

import datetime
import re
from collections.abc import Iterable
from dataclasses import dataclass

from algdata_fleet import FleetError

# Columns that every table has, null where no template names them.
STANDARD = ("home", "snapshot", "device", "firmware")
MAC = re.compile(r"[0-9A-Fa-f]{12}")
NAME_LENGTH = 255  # what a file system allows; an archive allows any
NO_DATE = "its path has no date since 2000, expected YYYY-MM-DD as {day} or at the start of {snapshot}"
PIECE = re.compile(r"\{(?P<name>[A-Za-z][A-Za-z0-9_]*)\}|(?P<any>\*)|(?P<text>[^{}*]+)")


@dataclass(frozen=True)
class Place:
    """What a path says about its file."""

    day: datetime.date
    values: tuple[str | None, ...]  # in the order of Templates.columns


class Template:
    """One template, compared with whole paths below the source or with their first components."""

    def __init__(self, text: str) -> None:
        self.text = text
        self.components = text.split("/")
        for component in self.components:
            self._require_component(component)
        self.names = list(dict.fromkeys(re.findall(r"\{(\w+)\}", text)))
        if "home" not in self.names:
            raise FleetError(f"--path '{text}': it has no {{home}}")
        self.home_at = next(at for at, part in enumerate(self.components) if "{home}" in part)
        if self.home_at == len(self.components) - 1:
            raise FleetError(f"--path '{text}': {{home}} is in the file's name, expected it in a directory's")
        self._expressions = [self._expression(depth) for depth in range(len(self.components) + 1)]

    def _require_component(self, component: str) -> None:
        if not component or component.startswith("."):
            raise FleetError(
                f"--path '{self.text}': '{component}' is empty or hidden, expected a part like {{home}}"
            )
        if PIECE.sub("", component) or re.search(r"[}*]\{", component):
            raise FleetError(
                f"--path '{self.text}': expected names in braces, separated by texts, in '{component}'"
            )

    def _expression(self, depth: int) -> re.Pattern[str]:
        seen: set[str] = set()

        def one(piece: re.Match[str]) -> str:
            if piece["text"]:
                return re.escape(piece["text"])
            if piece["any"]:
                return "[^/]+?"
            name = piece["name"]
            if name in seen:
                return f"(?P={name})"
            seen.add(name)
            return f"(?P<{name}>[^/]+?)"

        parts = [PIECE.sub(one, component) for component in self.components[:depth]]
        return re.compile("/".join(parts), re.DOTALL)

    def match(self, path: str) -> dict[str, str] | None:
        """The values of the names in a whole path."""
        found = self._expressions[-1].fullmatch(path)
        return found.groupdict() if found else None

    def match_start(self, path: str) -> dict[str, str] | None:
        """The values in a path of fewer components, such as a shard's."""
        depth = path.count("/") + 1 if path else 0
        if depth > len(self.components):
            return None
        found = self._expressions[depth].fullmatch(path)
        return found.groupdict() if found else None


class Templates:
    """All templates of a load. The first that matches is used."""

    def __init__(self, texts: Iterable[str], day: datetime.date | None = None) -> None:
        self.all = [Template(text) for text in texts]
        self.fixed_day = day
        names = [name for template in self.all for name in template.names]
        self.columns = [*STANDARD, *dict.fromkeys(n for n in names if n not in (*STANDARD, "day"))]
        lower = [name.lower() for name in [*self.columns, "day"]]
        if len(set(lower)) != len(lower):
            raise FleetError(f"--path: two names differ in letter case only: {', '.join(self.columns)}")

    def place(self, path: str) -> Place | str:
        """Where a file belongs, or why that is not known."""
        if max(map(len, path.split("/"))) > NAME_LENGTH:  # would take its square in time
            return f"a name in its path has more than {NAME_LENGTH} characters"
        for template in self.all:
            values = template.match(path)
            if values is not None:
                day = self._day_of(values)
                if day is None:
                    return NO_DATE
                return Place(day, tuple(_value(name, values.get(name)) for name in self.columns))
        return "no --path matches"

    def day_of_start(self, path: str) -> datetime.date | None:
        """The day that the path of a directory or an archive states for everything in it."""
        for template in self.all:
            values = template.match_start(path)
            if values is not None and (day := self._day_of(values)):
                return day
        return None

    def is_home(self, path: str) -> bool:
        """Whether a directory is that of a home."""
        depth = path.count("/")
        return any(t.home_at == depth and t.match_start(path) is not None for t in self.all)

    @property
    def deepest_home(self) -> int:
        return max(template.home_at for template in self.all)

    def _day_of(self, values: dict[str, str]) -> datetime.date | None:
        text = values.get("day") or values.get("snapshot", "")[:10]
        return parse_day(text) or (None if "day" in values else self.fixed_day)


def _value(name: str, text: str | None) -> str | None:
    """A device's MAC in lower case, as in the records."""
    return text.lower() if name == "device" and text and MAC.fullmatch(text) else text


def parse_day(text: str) -> datetime.date | None:
    """A day since 2000. An earlier one is the clock of a router that was not set."""
    if not re.fullmatch(r"[0-9]{4}-[0-9]{2}-[0-9]{2}", text):
        return None
    try:
        day = datetime.date.fromisoformat(text)
    except ValueError:
        return None
    return day if day.year >= 2000 else None
