#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Each check of scripts/lint accepts a clean tree and names the place of a fault."""
import re
import shutil
import unittest

from support import ScratchRepository, require

SPDX = "# SPDX-License-Identifier: Apache-2.0\n"
SPDX_C = "/* SPDX-License-Identifier: Apache-2.0 */\n"

PRESETS = """{ "version": 3, "configurePresets": [ { "name": "lint", "generator": "Ninja",
    "binaryDir": "${sourceDir}/build/lint", "cacheVariables": {
        "CMAKE_CXX_COMPILER": "clang++", "CMAKE_EXPORT_COMPILE_COMMANDS": "ON" } } ] }
"""
CMAKE_LISTS = SPDX + """cmake_minimum_required(VERSION 3.21)
project(scratch LANGUAGES CXX)
add_library(scratch STATIC alg/scratch.cpp)
"""


class Lint(ScratchRepository):
    scripts = ("lint", "check-commits", "install-deps")

    def setUp(self):
        super().setUp()
        self.write(".gitignore", "/build/\n__pycache__/\n")

    def lint(self, *names):
        """The status, the line of each check without its time, and the findings."""
        status, output = self.run_in(self.root, "scripts/lint", *names)
        return status, [re.sub(r" +\d+\.\d s$", "", line) for line in output.splitlines()]

    def assert_clean(self, name):
        status, lines = self.lint(name)
        self.assertEqual((status, len(lines)), (0, 1), lines)
        self.assertRegex(lines[0], rf"^{name} +ok +\d+ checked$")

    def assert_findings(self, name, *findings):
        status, lines = self.lint(name)
        self.assertEqual(status, 1, lines)
        self.assertRegex(lines[0], rf"^{name} +{len(findings)} findings +\d+ checked$")
        self.assertEqual(lines[1:], list(findings))

    def test_text(self):
        self.write("good.sh", "#!/bin/sh\n" + SPDX + "echo\n")
        self.write("rules", "#!/usr/bin/make -f\n" + SPDX + "all:\n\techo\n")
        self.write("page.md", "# Page\n\n```text\nends with a blank \n```\n")
        self.assert_clean("text")
        self.write("bad.cmake", "set(a b)\n" + "#" * 111 + "\n")
        self.write("bad.h", SPDX_C + "int a; \n\tint b;")
        self.write("bad.md", "# Page\r\n")
        self.assert_findings(
            "text",
            "bad.cmake:1: no SPDX line at the top",
            "bad.cmake:2: 111 columns, at most 110",
            "bad.h:3: no newline at the end",
            "bad.h:2: blanks or a carriage return at the end of the line",
            "bad.h:3: a tab",
            "bad.md:1: blanks or a carriage return at the end of the line")

    def test_data_is_not_checked(self):
        self.write(".gitattributes", "data/** -text\n")
        self.write("data/blanks.txt", "a \n\t\n")
        self.assert_clean("text")

    def test_links(self):
        self.write("docs/other.md", "# A `code` word, again\n\n## Twice\n\n## Twice\n")
        self.write("page.md", "# Page\n\n[a](docs/other.md) [b](docs/other.md#a-code-word-again)\n"
                              "[c](#page) [d](docs/other.md#twice-1) [e](docs) [f](https://example.com/no)\n"
                              "`docs/*.md`, `docs/NAME.md`, `docs/crash-...`\n\n"
                              "```sh\n# no heading\n[x](none)\n```\n")
        self.assert_clean("links")
        self.write("bad.md", "[a](docs/none.md)\n[b](docs/other.md#none)\n[c](/docs/other.md)\n"
                             "[d](#no-heading)\nSee `docs/gone.md`.\n")
        self.write("bad.cpp", "/* docs/gone.md */\n")
        self.write("bad.sh", f"cd {self.root}/docs\ncd /home" + "/someone\n")
        self.assert_findings(
            "links",
            f"bad.sh:1: a path of one machine: {self.root}",
            "bad.sh:2: a path of one machine: /home" + "/someone",
            "bad.md:1: a link to docs/none.md, which is not there",
            "bad.md:2: a link to docs/other.md#none: docs/other.md has no heading of that name",
            "bad.md:3: a link to /docs/other.md, which is not there",
            "bad.md:4: a link to #no-heading: bad.md has no heading of that name",
            "bad.md:5: docs/gone.md is not there",
            "bad.cpp:1: docs/gone.md is not there")

    @unittest.skipUnless(shutil.which("clang-format"), "clang-format is not installed")
    def test_format(self):
        self.write(".clang-format", "BasedOnStyle: LLVM\n")
        self.write("good.cpp", "int a;\n")
        self.assert_clean("format")
        self.write("bad.cpp", "int a;\nint  b;\n")
        self.assert_findings("format", "bad.cpp:2: 1 places differ; run clang-format -i bad.cpp")

    @unittest.skipUnless(all(map(shutil.which, ("clang-tidy", "clang++", "cmake", "ninja"))),
                         "clang-tidy is not installed")
    def test_tidy(self):
        self.write("CMakePresets.json", PRESETS)
        self.write("CMakeLists.txt", CMAKE_LISTS)
        self.write(".clang-tidy", "Checks: '-*,readability-else-after-return'\nHeaderFilterRegex: '/alg/'\n")
        self.write("alg/scratch.h", "int f(int);\n")
        self.write("alg/scratch.cpp", '#include "scratch.h"\nint f(int a) { return a; }\n')
        self.assert_clean("tidy")
        self.assert_clean("tidy")  # a remembered source
        self.write("alg/scratch.h", "inline int g(int a)\n{\n    if (a)\n        return 1;\n"
                                    "    else\n        return 2;\n}\n")
        self.assert_findings(
            "tidy", "alg/scratch.h:5: do not use 'else' after 'return' [readability-else-after-return]")
        self.write("alg/scratch.h", "")
        self.write("alg/forgotten.cpp", "")
        self.assert_findings("tidy", "alg/forgotten.cpp: not part of the build, so not checked")

    @unittest.skipUnless(shutil.which("shellcheck"), "shellcheck is not installed")
    def test_shell(self):
        self.write("good", "#!/usr/bin/env bash\necho \"$1\"\n")
        self.assert_clean("shell")
        self.write("bad", "#!/bin/sh\necho $1\n")
        self.assert_findings("shell", "bad:2: Double quote to prevent globbing and word splitting. [SC2086]")

    @unittest.skipUnless(shutil.which("pyflakes3"), "pyflakes3 is not installed")
    def test_python(self):
        self.write("good", "#!/usr/bin/env python3\nprint(1)\n")
        self.assert_clean("python")
        self.write("bad", "#!/usr/bin/env python3\nimport os\n")
        self.assert_findings("python", "bad:2:1: 'os' imported but unused")

    @unittest.skipUnless(shutil.which("codespell"), "codespell is not installed")
    def test_spelling(self):
        self.write("good.md", "upTo is a name\n")
        self.assert_clean("spelling")
        self.write("bad.md", "it rec" + "ieves\n")
        self.assert_findings("spelling", "bad.md:1: rec" + "ieves ==> receives")

    def test_commits(self):
        self.git("add", "-A")
        self.git("commit", "-q", "-m", "Add the rules")
        self.assert_clean("commits")
        self.git("commit", "-q", "--allow-empty", "-m", "Add a field.")
        status, lines = self.lint("commits")
        self.assertEqual(status, 1)
        self.assertRegex(lines[1], r'^\w+ "Add a field.": the subject ends with a full stop$')

    def test_an_unknown_check_is_refused(self):
        status, lines = self.lint("nothing")
        self.assertEqual(status, 2)
        self.assertIn("there is no check nothing", lines[-1])


if __name__ == "__main__":
    require("git")
    unittest.main()
