#!/usr/bin/python3
"""Starts the real program a second time: in the same home, which brings the first one's window back, and in another."""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

from harness import settings
from harness.case import EndToEndTest
from harness.desktop import wait_until
from harness.running import RunningProgram

PROGRAM = os.environ["QUILLMERE_PROGRAM"]
AS_ROOT = "Quillmere is running as root: it works on root's own home, and nothing asks for a password."


class SecondStartTest(EndToEndTest):
    def setUp(self):
        parent = tempfile.TemporaryDirectory(prefix="q-second-", dir="/tmp")
        self.addCleanup(parent.cleanup)
        self.folder = Path(parent.name)
        (self.folder / "tmp").mkdir()

    def variables(self, home: str) -> dict[str, str]:
        """All homes share the folder that a session gives to its programs."""
        (self.folder / home).mkdir(exist_ok=True)
        settings.complete_setup(self.folder / home, Path(PROGRAM))
        return {"HOME": str(self.folder / home), "TMPDIR": str(self.folder / "tmp")}

    def begin(self, home: str) -> RunningProgram:
        program = self.start([PROGRAM], self.variables(home))
        program.application.find("list item", "Dashboard")
        return program

    def start_again(self, home: str) -> subprocess.CompletedProcess:
        environment = self.desktop.environment | {"QT_QPA_PLATFORM": "xcb"} | self.variables(home)
        return subprocess.run([PROGRAM], env=environment, capture_output=True, text=True, timeout=90, check=False)

    def has_window(self, program: RunningProgram) -> bool:
        return bool(self.desktop.run_or_nothing("xdotool", "search", "--onlyvisible", "--pid",
                                                str(program.process.pid)).split())

    def hide(self, program: RunningProgram) -> None:
        self.desktop.run("xdotool", "windowactivate", "--sync", program.window())
        program.person.press("ctrl+w")
        wait_until(lambda: not self.has_window(program), "the window to be hidden")

    def test_ends_and_brings_the_window_of_the_first_back(self):
        first = self.begin("home")
        self.hide(first)

        second = self.start_again("home")

        self.assertEqual(second.returncode, 0, second.stderr)
        wait_until(lambda: self.has_window(first), "the window to come back")
        self.assertIsNone(first.process.poll())
        first.application.find("list item", "Dashboard")

    def test_runs_beside_the_program_of_another_home(self):
        first = self.begin("home")
        self.hide(first)

        other = self.begin("other home")

        wait_until(lambda: self.has_window(other), "a window of its own")
        self.assertIsNone(other.process.poll())
        self.assertFalse(self.has_window(first))

    def test_starts_anew_once_the_first_has_ended(self):
        first = self.begin("home")
        first.process.kill()
        first.process.wait()

        again = self.begin("home")

        wait_until(lambda: self.has_window(again), "a window of its own")

    def test_says_in_one_line_of_its_own_when_it_runs_as_root(self):
        program = self.begin("home")

        said = [line for line in program.output().splitlines() if line.startswith("Quillmere")]

        self.assertEqual(said, [AS_ROOT] if os.geteuid() == 0 else [])


if __name__ == "__main__":
    unittest.main()
