# SPDX-License-Identifier: Apache-2.0
"""Runs a command on a shard: never through a shell, with limits of time and memory."""

import contextlib
import ctypes
import json
import os
import resource
import signal
import subprocess
import sys
import tempfile
import threading
from collections.abc import Iterator
from dataclasses import dataclass
from types import TracebackType
from typing import IO, Any, NoReturn

from algdata_fleet import FleetError

PR_SET_PDEATHSIG = 1
MESSAGE_BYTES = 2000  # of the messages that are kept, the last


@dataclass(frozen=True)
class Limits:
    """Limits of each command that runs on a shard."""

    seconds: int = 600
    megabytes: int = 2048
    files: int = 500_000


class ToolFailure(FleetError):
    """A command on a shard has failed in a way that leaves its result in doubt."""


def _environment() -> dict[str, str]:
    """Python finds its modules where this process does, and never in the working directory, the source."""
    modules = os.pathsep.join(path for path in sys.path if os.path.isabs(path))
    return {**os.environ, "LC_ALL": "C.UTF-8", "PYTHONPATH": modules}


def _apply(limits: Limits) -> None:
    """In the new process, before the command starts."""
    ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, signal.SIGKILL)  # a killed executor leaves no command
    size = limits.megabytes << 20
    resource.setrlimit(resource.RLIMIT_AS, (size, size))
    resource.setrlimit(resource.RLIMIT_CPU, (limits.seconds, limits.seconds + 5))
    resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))  # such as its messages
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


class Tool:
    """A running command. Leaving the `with` waits for it, and raises ToolFailure unless it ended well."""

    def __init__(self, command: list[str], cwd: str, limits: Limits, good: tuple[int, ...] = (0,)) -> None:
        self.command = command
        self.limits = limits
        self.good = good
        self.status = 0
        self.messages = ""
        self._timed_out = False
        self._torn = False
        self._errors = tempfile.TemporaryFile()  # noqa: SIM115
        self._process = subprocess.Popen(
            command,
            cwd=cwd,
            env=_environment(),
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=self._errors,
            preexec_fn=lambda: _apply(limits),
            process_group=0,
        )
        self._timer = threading.Timer(limits.seconds, self._stop)
        self._timer.daemon = True  # after an error, no program waits for it
        self._timer.start()

    def _stop(self) -> None:
        self._timed_out = True
        self._kill()

    def _kill(self) -> None:
        """With what it has started, which would keep its output open."""
        with contextlib.suppress(ProcessLookupError):
            os.killpg(self._process.pid, signal.SIGKILL)

    @property
    def _output(self) -> IO[bytes]:
        assert self._process.stdout is not None
        return self._process.stdout

    def lines(self) -> Iterator[bytes]:
        """Whole lines. A command that is killed leaves a torn one; why is known when it is waited for."""
        for line in self._output:
            self._torn = not line.endswith(b"\n")
            if not self._torn:
                yield line

    def __enter__(self) -> "Tool":
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        if kind is not None:
            self._kill()
        self._output.close()
        self.status = self._process.wait()
        self._timer.cancel()
        with self._errors as messages:
            messages.seek(max(0, messages.seek(0, os.SEEK_END) - MESSAGE_BYTES))
            self.messages = messages.read(MESSAGE_BYTES).decode("utf-8", "backslashreplace").strip()
        if kind is None:
            self._require_good()

    def _require_good(self) -> None:
        name = os.path.basename(self.command[0])
        if self._timed_out or self.status == -signal.SIGXCPU:
            raise ToolFailure(f"{name} took more than {self.limits.seconds} s, the limit for a shard")
        if self.status < 0:
            raise ToolFailure(f"{name} was ended by {signal.Signals(-self.status).name}")
        if self.status not in self.good:
            self.fail()
        if self._torn:
            raise ToolFailure(f"{name} has ended within a line of its output")

    def fail(self) -> NoReturn:
        last = self.messages.splitlines()[-1] if self.messages else f"status {self.status}"
        raise ToolFailure(last.removeprefix("algdata: "))


def objects(command: list[str], cwd: str, limits: Limits, good: tuple[int, ...] = (0,)) -> Iterator[Any]:
    """The JSON values that a command prints, one per line."""
    with Tool(command, cwd, limits, good) as tool:
        for line in tool.lines():
            yield json.loads(line)


def answer(command: list[str], cwd: str, limits: Limits) -> Iterator[dict[str, Any]]:
    """The rows of a query to its end, whatever could not be read. The end is a row of nulls."""
    ended = False
    with Tool(command, cwd, limits, good=(0, 1, 2)) as tool:
        for line in tool.lines():
            row = json.loads(line)
            ended = not any(row.values())
            if not ended:
                yield row
    if not ended:
        tool.fail()
