#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""scripts/release refuses versions that differ, a tree with changes, and failed checks."""
import unittest

from support import ScratchRepository, require

HEADER = """#define ALG_DATA_INTERFACE_VERSION_MAJOR 2
#define ALG_DATA_INTERFACE_VERSION_MINOR 1
#define ALG_DATA_INTERFACE_VERSION_PATCH 0
"""
CHANGELOG = "# Changelog\n\n## [2.1.0] - 2026-11-14\n\n## [2.0.0] - 2026-10-30\n"
DEBIAN = """alg-data-interface (2.1.0) bookworm; urgency=medium

  * A version.

 -- A <a@b.c>  Sat, 14 Nov 2026 12:00:00 +0000
"""


class Release(ScratchRepository):
    scripts = ("release", "install-deps")

    def setUp(self):
        super().setUp()
        self.write("alg/dataInterface.h", HEADER)
        self.write("CHANGELOG.md", CHANGELOG)
        self.write("debian/changelog", DEBIAN)
        self.write(".ci/run", "#!/bin/sh\necho the checks run\nexit 1\n")
        (self.root / ".ci/run").chmod(0o755)
        self.commit()

    def commit(self):
        self.git("add", "-A")
        self.git("commit", "-q", "--allow-empty", "-m", "A version")

    def expect(self, output, *arguments, status=1):
        self.assertEqual(self.run_in(self.root, "scripts/release", *arguments), (status, output))

    def test_wants_a_version(self):
        usage = "usage: scripts/release VERSION, such as scripts/release 1.0.0\n"
        self.expect(usage, status=2)
        self.expect(usage, "v2.1.0", status=2)
        self.expect(usage, "2.1", status=2)

    def test_refuses_another_version_in_every_place(self):
        self.expect("""scripts/release: alg/dataInterface.h states version 2.1.0, not 2.2.0
scripts/release: CHANGELOG.md begins with "## [2.1.0] - 2026-11-14", not with "## [2.2.0] - YYYY-MM-DD"
scripts/release: debian/changelog begins with version 2.1.0, not 2.2.0
""", "2.2.0")

    def test_refuses_an_unreleased_version(self):
        self.write("CHANGELOG.md", CHANGELOG.replace("2026-11-14", "unreleased"))
        self.write("debian/changelog", DEBIAN.replace("bookworm", "UNRELEASED"))
        self.commit()
        self.expect("""scripts/release: CHANGELOG.md begins with "## [2.1.0] - unreleased", \
not with "## [2.1.0] - YYYY-MM-DD"
scripts/release: debian/changelog still says UNRELEASED
""", "2.1.0")

    def test_refuses_changes(self):
        self.write("CHANGELOG.md", CHANGELOG + "\n")
        self.write("new.txt", "")
        self.expect("scripts/release: the tree has changes:\n M CHANGELOG.md\n?? new.txt\n", "2.1.0")

    def test_refuses_a_changelog_of_the_future(self):
        self.write("debian/changelog", DEBIAN.replace("Sat, 14 Nov 2026", "Fri, 14 Nov 2036"))
        self.commit()
        self.expect("scripts/release: the time in debian/changelog is in the future\n", "2.1.0")

    def test_refuses_a_commit_made_during_the_checks(self):
        self.write(".ci/run", "#!/bin/sh\ngit commit -q --allow-empty -m 'Another version'\n")
        self.commit()
        self.expect("scripts/release: the tree has changed while .ci/run was running\n", "2.1.0")

    def test_refuses_when_a_check_fails(self):
        self.expect("the checks run\nscripts/release: .ci/run has failed\n", "2.1.0")


if __name__ == "__main__":
    require("git", "dpkg-parsechangelog")
    unittest.main()
