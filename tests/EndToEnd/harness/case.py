"""What the end-to-end tests have in common."""

import atexit
import functools
import os
import unittest
from pathlib import Path

from . import settings
from .desktop import Desktop
from .running import RunningProgram

#: Where pictures and outlines of failures go.
OUTPUT = Path(os.environ.get("QUILLMERE_END_TO_END_OUTPUT", "end-to-end-failures")).absolute()


@functools.cache
def _the_desktop() -> Desktop:
    desktop = Desktop()
    atexit.register(desktop.close)
    return desktop


class EndToEndTest(unittest.TestCase):
    """All tests of a process share a desktop; each starts what it needs. A failure leaves a picture and an outline."""

    desktop: Desktop

    @classmethod
    def setUpClass(cls):
        cls.desktop = _the_desktop()

    def start(self, command: list[str], variables: dict[str, str] | None = None,
              folder: Path | None = None, is_first_start: bool = False) -> RunningProgram:
        """A program of ours starts without its setup wizard, unless it is its first start."""
        home = (variables or {}).get("HOME")
        if home and not is_first_start:
            settings.complete_setup(Path(home), Path(command[0]))
        program = RunningProgram(self.desktop, command, variables or {}, self._testMethodName, folder)
        self.addCleanup(self._finish, program)
        return program

    def _finish(self, program: RunningProgram) -> None:
        if self._failed():
            stem = str(OUTPUT / self.id().removeprefix("__main__."))
            self.desktop.picture(Path(f"{stem}.png"))
            Path(f"{stem}.txt").write_text(f"{program.application.outline()}\n\n{program.output()}")
            print(f"See {stem}.png and .txt")
        program.end()

    def _failed(self) -> bool:
        return any(error for _, error in self._outcome.result.failures + self._outcome.result.errors
                   if _ is self) or not self._outcome.success
