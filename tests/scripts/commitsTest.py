#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""scripts/check-commits accepts good messages and names the fault of a bad one."""
import unittest

from support import ScratchRepository, require

GOOD = (
    "Read the count of a device line as the file states it",
    "fuzz: Add seeds for the rank index",
    "tests/algdata: cover a missing header",
    "Pass the path to the log",
    "Embed the version",
    "Feed the reader from memory",
    "Focus the check on one file",
    "X" * 72,
    "Add a field\n\nThe field holds what the driver reports.\n\nA second paragraph.",
    "Add a field\n\n" + "b" * 80,
    "Add a field\n\nhttps://example.com/" + "p" * 80,
)

BAD = (
    ("", "the subject is empty"),
    ("X" * 73, "the subject has 73 characters, at most 72"),
    ("add a field", 'the subject starts with neither a capital letter nor "area: "'),
    ("Added a field", '"Added" is not an imperative'),
    ("Adding a field", '"Adding" is not an imperative'),
    ("Adds a field", '"Adds" is not an imperative'),
    ("fuzz: fixes a seed", '"fixes" is not an imperative'),
    ("Add a field.", "the subject ends with a full stop"),
    ("Add a field; fix a test", "the subject names two changes"),
    ("Add a field\nbecause it is needed", "the second line is not blank"),
    ("Add a field\n\nbody " + "b" * 76, "line 3 has 81 characters, at most 80"),
)


class Message(ScratchRepository):
    scripts = ("check-commits",)

    def check(self, message):
        return self.run_in(self.root, "scripts/check-commits", "--message", "-", text=message)

    def test_good_messages_pass(self):
        for message in GOOD:
            with self.subTest(message):
                self.assertEqual(self.check(message), (0, ""))

    def test_bad_messages_fail_and_name_the_fault(self):
        for message, fault in BAD:
            with self.subTest(message):
                status, output = self.check(message)
                self.assertEqual(status, 1)
                self.assertIn(fault, output)

    def test_comments_and_the_diff_of_a_verbose_commit_are_not_checked(self):
        message = ("Add a field\n# Please enter the commit message for your changes.\n"
                   "# ------------------------ >8 ------------------------\n" + "+ long line" * 20 + "\n")
        self.assertEqual(self.check(message), (0, ""))


class History(ScratchRepository):
    scripts = ("check-commits",)

    def commit(self, subject):
        self.git("add", "-A")
        self.git("commit", "-q", "--allow-empty", "-m", subject)

    def check(self, *arguments):
        return self.run_in(self.root, "scripts/check-commits", *arguments)

    def setUp(self):
        super().setUp()
        self.write("rules-are-not-there-yet", "")
        self.git("add", "rules-are-not-there-yet")
        self.git("commit", "-q", "-m", "old history.")
        self.commit("Add the rules")

    def test_history_before_the_rules_is_not_checked(self):
        self.commit("Add a field")
        self.assertEqual(self.check(), (0, "1 commits checked\n"))

    def test_a_range_is_checked_whatever_its_age(self):
        self.assertEqual(self.check("HEAD")[0], 1)

    def test_a_bad_commit_after_the_rules_is_named(self):
        self.commit("added a field")
        status, output = self.check()
        self.assertEqual(status, 1)
        self.assertIn('"added a field": "added" is not an imperative', output)

    def test_a_branch_that_began_before_the_rules_is_not_checked(self):
        self.git("branch", "-q", "old", "HEAD~1")
        self.commit("Add a field")
        self.git("checkout", "-q", "old")
        self.git("commit", "-q", "--allow-empty", "-m", "made without rules.")
        self.git("checkout", "-q", "-")
        self.git("merge", "-q", "old", "-m", "merged without rules.")
        self.assertEqual(self.check(), (0, "1 commits checked\n"))

    def test_a_shallow_clone_checks_what_it_has(self):
        for subject in ("bad before the clone begins.", "Add a field", "Add a test", "added a page"):
            self.commit(subject)
        status, output = self.run_in(self.root.parent, "git", "clone", "-q", "--depth", "3",
                                     f"file://{self.root}", "shallow")
        self.assertEqual(status, 0, output)
        status, output = self.run_in(self.root.parent / "shallow", "scripts/check-commits")
        self.assertEqual(status, 1)
        self.assertIn("2 commits checked", output)
        self.assertIn('"added a page"', output)


if __name__ == "__main__":
    require("git")
    unittest.main()
