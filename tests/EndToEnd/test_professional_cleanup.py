#!/usr/bin/python3
"""Cleans what development tools left in a sample home with the real program, and looks at the disk afterwards."""

import json
import os
import unittest
from collections import Counter
from pathlib import Path

import roads
from harness.hands import WAYS
from sample_home_case import SampleHomeCase  # Before what it tells the way to.
from sample_home import inspection


class ProfessionalCleanupTest(SampleHomeCase):
    def left(self) -> list[str]:
        return [item["path"] for item in self.offered if os.path.lexists(self.folder / item["path"])]

    def history(self) -> list[dict]:
        return json.loads((self.home / "Library/Application Support/Quillmere/history.json").read_text())

    def test_cleans_the_safe_groups_alone_unless_it_is_told_more(self):
        for way in WAYS:
            with self.subTest(way=way.__name__):
                self.begin(way)
                self.offered = self.account["offered to professionals"]
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
