#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""scripts/install-deps says what it does, and with --dry-run it changes nothing."""
import shutil
import unittest

from support import ScratchRepository, require

# In the place of Debian's tools: each call is recorded, and everything except clang is missing.
FAKES = {
    "apt-get": 'echo "apt-get $*" >> "$CALLS"; [[ $* != *update || -z "${BROKEN_MIRROR:-}" ]]',
    "dpkg": 'echo "dpkg $*" >> "$CALLS"',
    "dpkg-query": '[ "${*: -1}" = clang ] || [ -n "${ALL:-}" ] && printf installed',
    "id": "echo ${USER_ID:-0}",
    "sudo": 'echo "sudo $*" >> "$CALLS"',
}
TOOLS = ("bash", "env", "grep", "printf", "sed", "sort")

LOCK = "apt-get -o DPkg::Lock::Timeout=300 -q "


class InstallDeps(ScratchRepository):
    scripts = ("install-deps",)

    def setUp(self):
        super().setUp()
        self.calls = self.root / "calls"
        self.fakes = self.root / "fakes"
        self.fakes.mkdir()
        for name, text in FAKES.items():
            self.write(f"fakes/{name}", f"#!/usr/bin/env bash\n{text}\n")
            (self.fakes / name).chmod(0o755)
        for tool in TOOLS:
            (self.fakes / tool).symlink_to(shutil.which(tool))

    def install(self, *arguments, without=(), **environment):
        """The status, the lines of the output, and the calls of Debian's tools."""
        for name in without:
            (self.fakes / name).unlink()
        environment |= {"PATH": str(self.fakes), "CALLS": str(self.calls), "ALG_DEPS": ""}
        status, output = self.run_in(self.root, "scripts/install-deps", *arguments, **environment)
        calls = self.calls.read_text().splitlines() if self.calls.exists() else []
        return status, output.splitlines(), calls

    def test_a_dry_run_prints_packages_and_commands_and_changes_nothing(self):
        status, lines, calls = self.install("--dry-run", "coverage")
        self.assertEqual((status, calls), (0, []))
        self.assertEqual(lines[0], "Missing packages for 'coverage':")
        self.assertIn("    gcovr                    adds up the counts of gcov", lines)
        self.assertEqual(lines[-2], f"+ {LOCK}update")
        self.assertRegex(lines[-1], f"^\\+ env DEBIAN_FRONTEND=noninteractive {LOCK}install -y"
                                    " --no-install-recommends g\\+\\+ cmake .*gcovr$")

    def test_what_is_printed_is_what_is_run(self):
        _, printed, _ = self.install("--dry-run", "arm")
        status, lines, calls = self.install("arm")
        self.assertEqual((status, lines), (0, printed))
        commands = [line.removeprefix("+ ").removeprefix("env DEBIAN_FRONTEND=noninteractive ")
                    for line in printed if line.startswith("+ ")]
        self.assertEqual(calls, commands)
        # One architecture has several packages, and is added once.
        self.assertEqual(calls[0], "dpkg --add-architecture armhf")
        self.assertEqual(calls[1], f"{LOCK}update")
        self.assertEqual(len(calls), 3)

    def test_a_package_that_is_installed_is_not_named(self):
        _, lines, _ = self.install("--dry-run", "fuzz")
        self.assertIn("libclang-rt-14-dev", lines[-1].split())
        self.assertNotIn("clang", lines[-1].split())

    def test_nothing_is_done_if_nothing_is_missing(self):
        self.assertEqual(self.install("all", ALL="yes"), (0, [], []))
        self.assertEqual(self.install("--dry-run", "all", ALL="yes"),
                         (0, ["All packages for 'all' are installed."], []))

    def test_sudo_is_used_and_shown_without_root(self):
        status, lines, calls = self.install("coverage", USER_ID="1000")
        self.assertEqual((status, lines[-2], calls[0]), (0, f"+ sudo {LOCK}update", f"sudo {LOCK}update"))

    def test_without_root_and_sudo_it_names_the_packages_and_fails(self):
        status, lines, calls = self.install("coverage", without=["sudo"], USER_ID="1000")
        self.assertEqual((status, calls), (1, []))
        self.assertTrue(lines[-1].startswith(
            "scripts/install-deps: run as root, or install sudo, to install: g++ cmake "), lines)
        status, lines, calls = self.install("--dry-run", "coverage", USER_ID="1000")
        self.assertEqual((status, lines[-2], calls), (0, f"+ sudo {LOCK}update", []))

    def test_an_index_that_cannot_be_fetched_does_not_end_it(self):
        status, lines, calls = self.install("coverage", BROKEN_MIRROR="yes")
        self.assertEqual((status, len(calls)), (0, 2))
        self.assertIn(
            "scripts/install-deps: apt-get update has failed in part; trying to install anyway", lines)

    def test_without_apt_it_lists_the_packages_and_fails(self):
        status, lines, calls = self.install("--dry-run", "coverage", without=["apt-get"])
        self.assertEqual((status, calls), (1, []))
        self.assertEqual(lines[0], "The command 'coverage' needs these packages, by their names in Debian:")
        self.assertIn("    gcovr                    adds up the counts of gcov", lines)

    def test_an_unknown_command_is_refused(self):
        for arguments in (["everything"], ["--dry-run", "everything"], ["all", "all"], ["all", "--dry-run"]):
            status, lines, calls = self.install(*arguments)
            self.assertEqual((status, calls), (2, []))
            self.assertRegex(lines[0], r"^usage: scripts/install-deps \[--dry-run\] \[demo\|test\|")


if __name__ == "__main__":
    require("git")
    unittest.main()
