# SPDX-License-Identifier: Apache-2.0
"""A scratch repository with copies of the scripts, for tests that run them."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

REPOSITORY = pathlib.Path(sys.argv.pop(1)).resolve()
# Nothing from the user's configuration and nothing from a git that calls this test.
ENVIRONMENT = {key: value for key, value in os.environ.items() if not key.startswith("GIT_")}
ENVIRONMENT |= {"GIT_CONFIG_GLOBAL": os.devnull, "GIT_CONFIG_SYSTEM": os.devnull, "ALG_DEPS": "present",
                "GIT_AUTHOR_NAME": "A", "GIT_AUTHOR_EMAIL": "a@b.c",
                "GIT_COMMITTER_NAME": "A", "GIT_COMMITTER_EMAIL": "a@b.c"}


def require(*tools):
    """Ends the test as skipped if a tool is missing."""
    missing = [tool for tool in tools if shutil.which(tool) is None]
    if missing:
        print("skipped: not installed: " + " ".join(missing))
        sys.exit(77)


class ScratchRepository(unittest.TestCase):
    scripts = ()

    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.root = pathlib.Path(directory.name, "repository")
        (self.root / "scripts").mkdir(parents=True)
        self.git("init", "-q")
        for script in self.scripts:
            shutil.copy(REPOSITORY / "scripts" / script, self.root / "scripts")

    def run_in(self, directory, *command, text=None, **environment):
        """The status and the output of a command."""
        done = subprocess.run(command, cwd=directory, env=ENVIRONMENT | environment, input=text, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        return done.returncode, done.stdout

    def git(self, *arguments):
        status, output = self.run_in(self.root, "git", *arguments)
        self.assertEqual(status, 0, output)

    def write(self, path, text):
        (self.root / path).parent.mkdir(parents=True, exist_ok=True)
        (self.root / path).write_text(text)
