#!/usr/bin/python3
"""Cleans what development tools left in a sample home with the real program, and looks at the disk afterwards."""

import json
import os
import sys
import tempfile
import unittest
from collections import Counter
from pathlib import Path

import roads
from harness.case import EndToEndTest
from harness.hands import WAYS

sys.path.insert(0, str(Path(__file__).parent.parent / "SampleHome"))
from sample_home import inspection, world  # noqa: E402

PROGRAM = os.environ["QUILLMERE_PROGRAM"]


class ProfessionalCleanupTest(EndToEndTest):
    def begin(self, way):
        parent = tempfile.TemporaryDirectory(prefix="q-home-", dir="/tmp")
        self.addCleanup(parent.cleanup)
        self.folder = Path(parent.name, "made")
        world.make(self.folder)
        self.addCleanup(inspection.remove, self.folder)
        self.offered = inspection.account(self.folder)["offered to professionals"]
        self.home = self.folder / "home"
        self.program = self.start([PROGRAM], world.environment(self.folder), folder=self.home)
        self.application = self.program.application
        self.hands = way(self.program)

    def left(self) -> list[str]:
        return [item["path"] for item in self.offered if os.path.lexists(self.folder / item["path"])]

    def history(self) -> list[dict]:
        return json.loads((self.home / "Library/Application Support/Quillmere/history.json").read_text())

    def test_cleans_the_safe_groups_alone_unless_it_is_told_more(self):
        for way in WAYS:
            with self.subTest(way=way.__name__):
                self.begin(way)
                counts = Counter(item["category"] for item in self.offered)

                roads.scan(self.program, self.hands, "Professional Cleanup")
                figures = roads.clean(self.program, self.hands)
                safe = counts["Visual Studio Code Caches"] + counts["Android SDK Temporary Files"]
                self.assertEqual(figures["Files Removed"], str(safe))
                self.assertEqual(len(self.left()), counts.total() - safe)

                self.hands.press("Select All")
                figures = roads.clean(self.program, self.hands)
                self.assertEqual(figures["Files Removed"], str(counts.total() - safe))
                self.assertNotIn("Files Skipped", figures)
                self.assertEqual(self.left(), [])
                self.assertEqual(inspection.damage(self.folder), [])
                for tool in (".pyenv", ".nvm", ".rustup/toolchains", "development/flutter"):
                    self.assertTrue(os.listdir(self.home / tool), tool)

                records = self.history()
                self.assertEqual({record["operationType"] for record in records}, {"safeCleanup"})
                self.assertEqual(sum(record["filesRemoved"] for record in records), counts.total())
                self.assertEqual(len(os.listdir(self.home / ".local/share/Trash/info")), counts.total())
                self.program.end()


if __name__ == "__main__":
    unittest.main()
