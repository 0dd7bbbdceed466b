# SPDX-License-Identifier: Apache-2.0
"""Spark's own standalone cluster on the loopback interface: a master and workers, each a process.

    python -m algdata_fleet.cluster [--workers N] [--cores N] -- COMMAND [ARGUMENT...]

runs COMMAND while the cluster is there; ALGDATA_FLEET_MASTER has its address. Afterwards, and on
^C, it ends the processes that it started, by their ids. COMMAND reads nothing from the terminal.
The status is that of COMMAND.
"""

import argparse
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from types import FrameType, TracebackType

import pyspark

from algdata_fleet import FleetError

START_SECONDS = 120
END_SECONDS = 10


class Cluster:
    def __init__(self, workers: int = 2, cores: int = 1, megabytes: int = 1024) -> None:
        self.directory = pathlib.Path(tempfile.mkdtemp(prefix="algdata-fleet-cluster-"))
        self.processes: list[subprocess.Popen[bytes]] = []
        self.workers: list[subprocess.Popen[bytes]] = []
        self.master = ""
        self.page = ""
        self._size = (workers, cores, megabytes)

    def __enter__(self) -> "Cluster":
        try:
            workers, cores, megabytes = self._size
            log = self._start("master", "org.apache.spark.deploy.master.Master")
            self.master = self._find(log, r"Starting Spark master at (spark://\S+)")
            self.page = self._find(log, r"MasterWebUI.* (http://\S+)")
            for number in range(workers):
                self.add_worker(number, cores, megabytes)
        except BaseException:
            self.end()
            raise
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        self.end()

    def add_worker(self, number: int, cores: int, megabytes: int) -> None:
        directory = self.directory / f"worker{number}"
        log = self._start(
            f"worker{number}",
            "org.apache.spark.deploy.worker.Worker",
            *("--cores", str(cores), "--memory", f"{megabytes}m", "--work-dir", str(directory), self.master),
        )
        self.workers.append(self.processes[-1])
        self._find(log, r"(Successfully registered) with master")

    def _start(self, name: str, role: str, *arguments: str) -> pathlib.Path:
        """Each in a session of its own, so that ^C reaches this program alone, which then ends them."""
        spark_class = pathlib.Path(pyspark.__file__).parent / "bin/spark-class"
        log = self.directory / f"{name}.log"
        environment = {
            **os.environ,
            "SPARK_LOCAL_IP": "127.0.0.1",
            "SPARK_DAEMON_MEMORY": "256m",
            "PYSPARK_PYTHON": sys.executable,
        }
        with open(log, "wb") as out:
            process = subprocess.Popen(
                [spark_class, role, "--host", "127.0.0.1", "--port", "0", "--webui-port", "0", *arguments],
                env=environment,
                stdin=subprocess.DEVNULL,
                stdout=out,
                stderr=subprocess.STDOUT,
                start_new_session=True,
            )
        self.processes.append(process)
        return log

    def _find(self, log: pathlib.Path, pattern: str) -> str:
        """What a process says about itself as soon as it is ready."""
        deadline = time.monotonic() + START_SECONDS
        while time.monotonic() < deadline:
            if found := re.search(pattern, log.read_text(errors="replace")):
                return found[1]
            if self.processes[-1].poll() is not None:
                break
            time.sleep(0.1)
        last = log.read_text(errors="replace").splitlines()[-3:]
        raise FleetError("the cluster has not started: " + " / ".join(last))

    def end(self) -> None:
        """The workers first."""
        _end(self.processes[::-1], signal.SIGTERM)
        self.processes.clear()
        shutil.rmtree(self.directory, ignore_errors=True)


def _end(processes: list[subprocess.Popen[bytes]], number: int) -> None:
    """Each with what it has started, which is in its group."""
    for process in processes:
        _signal_group(process, number)
    deadline = time.monotonic() + END_SECONDS
    for process in processes:
        while _signal_group(process, 0) and time.monotonic() < deadline:
            process.poll()
            time.sleep(0.05)
        _signal_group(process, signal.SIGKILL)
        process.wait()


def _signal_group(process: subprocess.Popen[bytes], number: int) -> bool:
    """False if all of the group have ended. Until then, it keeps the id of the process that began it."""
    try:
        os.killpg(process.pid, number)
    except ProcessLookupError:
        return False
    return True


def main() -> int:
    parser = argparse.ArgumentParser(prog="python -m algdata_fleet.cluster", description=__doc__)
    parser.add_argument("--workers", type=int, default=2)
    parser.add_argument("--cores", type=int, default=1, help="of each worker")
    parser.add_argument("command", nargs="+")
    options = parser.parse_args()

    def interrupted(number: int, _: FrameType | None) -> None:
        raise SystemExit(128 + number)

    for number in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, interrupted)
    try:
        with Cluster(options.workers, options.cores) as cluster:
            print(f"Spark's master is {cluster.master}, its page {cluster.page}", flush=True)
            environment = {
                **os.environ,
                "ALGDATA_FLEET_MASTER": cluster.master,
                "SPARK_LOCAL_IP": "127.0.0.1",
            }
            child = subprocess.Popen(
                options.command, env=environment, stdin=subprocess.DEVNULL, process_group=0
            )
            try:
                return child.wait()
            except BaseException as error:
                _end([child], signal.SIGINT if isinstance(error, KeyboardInterrupt) else signal.SIGTERM)
                raise
    except KeyboardInterrupt:
        return 130


if __name__ == "__main__":
    sys.exit(main())
