"""What the tests in a sample home have in common."""

import os
import sys
import tempfile
from pathlib import Path

from harness.case import EndToEndTest

sys.path.insert(0, str(Path(__file__).parent.parent / "SampleHome"))
from sample_home import inspection, world  # noqa: E402

PROGRAM = os.environ["QUILLMERE_PROGRAM"]


class SampleHomeCase(EndToEndTest):
    def begin(self, way, linked_home: bool = False) -> None:
        """A home of its own, and the program started there for hands of that kind."""
        self.make_home(linked_home)
        self.start_program(way)

    def make_home(self, linked_home: bool = False) -> None:
        parent = tempfile.TemporaryDirectory(prefix="q-home-", dir="/tmp")
        self.addCleanup(parent.cleanup)
        self.folder = Path(parent.name, "made")
        world.make(self.folder)
        self.addCleanup(inspection.remove, self.folder)
        self.account = inspection.account(self.folder)
        self.home = self.folder / "home"
        if linked_home:
            self.home.rename(self.folder / "disk")
            self.home.symlink_to("disk")

    def start_program(self, way) -> None:
        self.program = self.start([PROGRAM], world.environment(self.folder), folder=self.home)
        self.application = self.program.application
        self.hands = way(self.program)
