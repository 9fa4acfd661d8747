#!/usr/bin/python3
"""Kills the real program in the middle of a cleanup, looks at the disk, and goes on with a new start."""

import json
import os
import sys
import tempfile
import unittest
from pathlib import Path
from urllib.parse import unquote_to_bytes

import roads
from harness.case import EndToEndTest
from harness.hands import ByPointer

sys.path.insert(0, str(Path(__file__).parent.parent / "SampleHome"))
from sample_home import world  # noqa: E402

PROGRAM = os.environ["QUILLMERE_PROGRAM"]
ITEMS = 3000
#: What the history holds before the run.
EARLIER = [{"id": "7C9E6679-7425-40DE-944B-E07FC1F90AE7", "date": 780000000.5, "operationType": "safeCleanup",
            "foundSize": 5, "cleanedSize": 5, "filesRemoved": 1, "filesSkipped": 0, "errors": [],
            "categoriesAffected": ["User Cache"], "status": "completed"}]


class KillTest(EndToEndTest):
    def make_home(self):
        parent = tempfile.TemporaryDirectory(prefix="q-kill-", dir="/tmp")
        self.addCleanup(parent.cleanup)
        self.folder = Path(parent.name)
        self.home = self.folder / "home"
        self.caches = self.home / "Library/Caches"
        self.trash = self.home / ".local/share/Trash"
        self.history = self.home / "Library/Application Support/Quillmere/history.json"
        for name in ("tmp", "run"):
            (self.folder / name).mkdir(mode=0o700)
        self.names = [f"item {number:04} ü" for number in range(ITEMS)]
        for name in self.names:
            (self.caches / name / "inside").mkdir(parents=True)
            (self.caches / name / "inside/file").write_text(f"contents of {name}")
        self.history.parent.mkdir(parents=True)
        self.history.write_text(json.dumps(EARLIER))

    def begin(self):
        self.program = self.start([PROGRAM], world.environment(self.folder), folder=self.home)
        self.hands = ByPointer(self.program)
        self.program.application.find("list item", "Dashboard")

    def is_whole(self, item: Path, name: str) -> bool:
        return (os.listdir(item) == ["inside"] and os.listdir(item / "inside") == ["file"]
                and (item / "inside/file").read_text() == f"contents of {name}")

    def origins_in_trash(self) -> list[str]:
        """The names of the items in the trash, by their info files, of which each must be complete."""
        names = []
        for name in os.listdir(self.trash / "files") if self.trash.exists() else []:
            lines = (self.trash / "info" / f"{name}.trashinfo").read_text().splitlines()
            self.assertEqual(lines[0], "[Trash Info]")
            values = dict(line.split("=", 1) for line in lines[1:])
            self.assertRegex(values["DeletionDate"], r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d$")
            origin = Path(os.fsdecode(unquote_to_bytes(values["Path"])))
            self.assertEqual(origin.parent, self.caches)
            self.assertTrue(self.is_whole(self.trash / "files" / name, origin.name), name)
            names.append(origin.name)
        return names

    def assert_nothing_lost(self) -> int:
        """Says how many items are in the trash."""
        trashed = self.origins_in_trash()
        left = [name for name in os.listdir(self.caches) if name in set(self.names)]
        for name in left:
            self.assertTrue(self.is_whole(self.caches / name, name), name)
        self.assertEqual(sorted(trashed + left), self.names)
        return len(trashed)

    def records(self) -> list[dict]:
        return json.loads(self.history.read_text())

    def count_in_trash(self) -> int:
        try:
            return len(os.listdir(self.trash / "files"))
        except FileNotFoundError:
            return 0

    def kill_when(self, reached: int) -> None:
        while self.count_in_trash() < reached:
            self.assertIsNone(self.program.process.poll())
        self.program.process.kill()
        self.program.process.wait()

    def test_loses_nothing_wherever_it_is_killed_and_goes_on_with_the_rest(self):
        amid = 0
        for reached in (1, ITEMS // 4, ITEMS * 3 // 4, ITEMS):
            with self.subTest(killed_at=reached):
                self.make_home()
                self.begin()
                roads.scan(self.program, self.hands)
                self.hands.press("Clean")

                self.kill_when(reached)

                trashed = self.assert_nothing_lost()
                self.assertGreaterEqual(trashed, reached)
                amid += trashed < ITEMS
                records = self.records()
                self.assertIn(EARLIER[0], records)
                if trashed < ITEMS:
                    self.assertEqual(records, EARLIER)

                self.begin()
                if trashed < ITEMS:
                    roads.scan(self.program, self.hands)
                    roads.clean(self.program, self.hands)
                    self.assertEqual([record["filesRemoved"] >= ITEMS - trashed for record in self.records()],
                                     [False, True])
                self.assertEqual(self.assert_nothing_lost(), ITEMS)
                shown = len(roads.history(self.program, self.hands))
                self.assertEqual(shown, len(self.records()))
                self.program.end()
        self.assertGreaterEqual(amid, 2)

    def test_starts_again_after_a_kill_in_a_scan(self):
        self.make_home()
        self.begin()
        self.hands.open("Safe Cleanup")
        self.hands.press("Start Scan")
        self.program.process.kill()
        self.program.process.wait()

        self.assertEqual(self.assert_nothing_lost(), 0)
        self.assertEqual(self.records(), EARLIER)
        self.begin()
        self.assertEqual(len(roads.history(self.program, self.hands)), 1)


if __name__ == "__main__":
    unittest.main()
