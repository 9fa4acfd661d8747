#!/usr/bin/python3
"""Starts the real program where nobody has said which home is the user's, or where that home is not there."""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

import roads
from harness import settings
from harness.case import EndToEndTest
from harness.hands import ByPointer

PROGRAM = os.environ["QUILLMERE_PROGRAM"]
#: Runs a command where the user database is another file: its first argument.
WITH_OWN_USERS = ["unshare", "--mount", "--propagation", "private", "sh", "-c",
                  'mount --bind "$1" /etc/passwd && shift && exec "$@"', "sh"]
#: Runs a command that may write nothing below a folder: its first argument. Others write there as before.
WITH_READ_ONLY = ["unshare", "--mount", "--propagation", "private", "sh", "-c",
                  'mount --bind "$1" "$1" && mount -o remount,bind,ro "$1" && shift && exec "$@"', "sh"]


def why_not(rig: list[str], argument: str) -> str:
    tried = subprocess.run([*rig, argument, "true"], capture_output=True, text=True, check=False)
    return tried.stderr if tried.returncode else ""


def contents(folder: Path) -> dict[str, bytes | None]:
    """All that is below a folder, and what the files say."""
    return {str(path.relative_to(folder)): path.read_bytes() if path.is_file() else None
            for path in sorted(folder.rglob("*"))}


class HomesTest(EndToEndTest):
    def setUp(self):
        parent = tempfile.TemporaryDirectory(prefix="q-homes-", dir="/tmp")
        self.addCleanup(parent.cleanup)
        self.folder = Path(parent.name)
        self.home = self.folder / "home"
        self.temporary = self.folder / "tmp"
        for folder in (self.home, self.temporary):
            folder.mkdir()

    def need(self, rig: list[str], argument: str):
        reason = why_not(rig, argument)
        if reason and "CI" in os.environ:
            self.fail(reason)
        if reason:
            self.skipTest(reason)

    def users_with(self, home: Path) -> str:
        users = self.folder / "passwd"
        users.write_text(f"somebody:x:{os.geteuid()}:{os.getegid()}::{home}:/bin/sh\n")
        return str(users)

    def run_to_the_end(self, command: list[str], **variables: str) -> subprocess.CompletedProcess:
        return subprocess.run(command, env=self.desktop.environment | {"QT_QPA_PLATFORM": "xcb"} | variables,
                              capture_output=True, text=True, timeout=60, check=False)

    def assert_refuses(self, ended: subprocess.CompletedProcess, home: str) -> None:
        self.assertEqual(ended.returncode, 1, ended.stderr)
        self.assertEqual(ended.stdout.splitlines()[-1], f"Quillmere cannot start: there is no home folder at {home}.")

    def test_ends_with_a_line_where_the_home_is_not_there_and_makes_none(self):
        for home in (self.folder / "nowhere", self.folder / "nowhere/at/all", self.folder / "file"):
            (self.folder / "file").write_text("no folder")
            with self.subTest(home=home):
                self.assert_refuses(self.run_to_the_end([PROGRAM], HOME=str(home)), str(home))
        self.assertEqual(sorted(os.listdir(self.folder)), ["file", "home", "tmp"])
        self.assertEqual((self.folder / "file").read_text(), "no folder")

    def test_ends_with_a_line_where_the_user_database_names_a_home_that_is_not_there(self):
        self.need(WITH_OWN_USERS, "/etc/passwd")
        users = self.users_with(self.folder / "nowhere")
        ended = self.run_to_the_end([*WITH_OWN_USERS, users, "env", "--unset=HOME", PROGRAM])
        self.assert_refuses(ended, str(self.folder / "nowhere"))

    def test_takes_the_home_of_the_user_database_where_the_environment_names_none(self):
        self.need(WITH_OWN_USERS, "/etc/passwd")
        users = self.users_with(self.home)
        settings.complete_setup(self.home, Path(PROGRAM))
        beside = {place: sorted(os.listdir(place)) for place in ("/", Path.home())}
        for setting in ("--unset=HOME", "HOME=", "HOME=relative/home"):
            with self.subTest(setting=setting):
                cache = self.home / "Library/Caches/item"
                cache.mkdir(parents=True, exist_ok=True)
                (cache / "file").write_text("rubbish")

                program = self.start([*WITH_OWN_USERS, users, "env", setting, PROGRAM],
                                     {"TMPDIR": str(self.temporary)}, folder=self.temporary)
                hands = ByPointer(program)
                roads.scan(program, hands)
                roads.clean(program, hands)

                self.assertFalse(cache.exists())
                self.assertIn("item", os.listdir(self.home / ".local/share/Trash/files"))
                self.assertTrue((self.home / "Library/Application Support/Quillmere/history.json").exists())
                program.end()
        self.assertEqual(sorted(os.listdir(self.folder)), ["home", "passwd", "tmp"])
        self.assertEqual({place: sorted(os.listdir(place)) for place in beside}, beside)

    def test_cleans_nothing_of_a_home_that_cannot_be_written_and_says_why(self):
        self.need(WITH_READ_ONLY, str(self.home))
        settings.complete_setup(self.home, Path(PROGRAM))
        cache = self.home / "Library/Caches/item"
        cache.mkdir(parents=True)
        (cache / "file").write_text("rubbish" * 1000)
        before = contents(self.home)

        program = self.start([*WITH_READ_ONLY, str(self.home), "env", f"HOME={self.home}", PROGRAM],
                             {"TMPDIR": str(self.temporary)}, folder=self.temporary)
        hands = ByPointer(program)
        roads.scan(program, hands)
        hands.press("Clean")
        program.application.find("heading", "Cleanup Report", patience=60)
        figures = roads.report(program.application)
        reasons = [item.name for item in program.application.all("label") if "item: " in item.name]
        hands.press("Done")
        program.application.wait_gone("heading", "Cleanup Report")
        hands.open("History")
        program.application.find("label", "No history available")

        self.assertEqual((figures["Files Removed"], figures["Files Skipped"]), ("0", "1"))
        self.assertEqual(len(reasons), 1, reasons)
        self.assertRegex(reasons[0], "^Failed to clean item: .*")
        self.assertIn("Failed to save history: ", program.output())
        self.assertEqual(contents(self.home), before)


if __name__ == "__main__":
    unittest.main()
