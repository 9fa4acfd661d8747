#!/usr/bin/python3
"""Cleans a sample home with the real program, and looks at the disk afterwards."""

import json
import os
import unittest
from collections import Counter
from pathlib import Path

import roads
from harness.desktop import wait_until
from harness.hands import WAYS, ByPointer
from sample_home_case import SampleHomeCase  # Before what it tells the way to.
from sample_home import inspection

CATEGORIES = ("User Cache", "User Logs", "Container Cache", "Temporary Files")


class SafeCleanupTest(SampleHomeCase):
    def offered(self) -> list[Path]:
        return [self.folder / item["path"] for item in self.account["offered"]]

    def counts_shown(self) -> dict[str, int]:
        rows = (item.name.split(", ") for item in self.application.all("list item"))
        return {row[0]: int(part.removesuffix(" items")) for row in rows if row[0] in CATEGORIES
                for part in row if part.endswith(" items")}

    def test_cleans_what_is_rubbish_and_nothing_else(self):
        for way in WAYS:
            with self.subTest(way=way.__name__):
                self.begin(way)

                roads.scan(self.program, self.hands)
                expected = Counter(item["category"] for item in self.account["offered"])
                self.assertEqual(self.counts_shown(), dict(expected))

                figures = roads.clean(self.program, self.hands)
                self.assertEqual(figures["Files Removed"], str(expected.total()))
                self.assertNotIn("Files Skipped", figures)
                self.assertEqual([path for path in self.offered() if os.path.lexists(path)], [])
                self.assertEqual(inspection.damage(self.folder), [])
                self.assertEqual(self.trashed(), expected.total())

                records = roads.history(self.program, self.hands)
                self.assertEqual(len(records), 1)
                self.assertIn(f"Safe Cleanup, {figures['Space Freed']}, Completed", records[0])
                self.assert_record(expected.total())
                self.program.end()

    def test_finds_nothing_the_second_time(self):
        self.begin(ByPointer)
        roads.scan(self.program, self.hands)
        roads.clean(self.program, self.hands)
        self.application.find("label", "No items found to clean")

    def test_saves_the_history_where_it_is_told_to(self):
        for way in WAYS:
            with self.subTest(way=way.__name__):
                self.begin(way)
                roads.scan(self.program, self.hands)
                roads.clean(self.program, self.hands)
                roads.history(self.program, self.hands)

                before = set(self.home.iterdir())
                roads.cancel_export(self.program, self.hands, "JSON")

                roads.export(self.program, self.hands, "CSV")
                saved = self.home / "Quillmere_History.csv"
                wait_until(saved.exists, "the saved file")
                self.assertIn("Safe Cleanup", saved.read_text())
                self.assertEqual(set(self.home.iterdir()) - before, {saved})
                self.program.end()

    def test_works_all_the_same_in_a_home_that_is_a_link(self):
        self.begin(ByPointer, linked_home=True)
        expected = Counter(item["category"] for item in self.account["offered"])

        roads.scan(self.program, self.hands)
        self.assertEqual(self.counts_shown(), dict(expected))
        figures = roads.clean(self.program, self.hands)

        self.assertEqual(figures["Files Removed"], str(expected.total()))
        self.assertEqual([path for path in self.offered() if os.path.lexists(path)], [])
        self.assertEqual(inspection.damage(self.folder), [])
        self.assertEqual(self.trashed(), expected.total())
        self.assert_record(expected.total())

        self.assertEqual(len(roads.history(self.program, self.hands)), 1)
        roads.export(self.program, self.hands, "JSON")
        saved = self.home / "Quillmere_History.json"
        wait_until(saved.exists, "the saved file")
        self.assertEqual(json.loads(saved.read_text()), json.loads(self.history_file().read_text()))

        roads.clear_history(self.program, self.hands)
        self.assertFalse(self.history_file().exists())
        self.assertTrue(self.home.is_symlink())

    def trashed(self) -> int:
        return len(os.listdir(self.home / ".local/share/Trash/info"))

    def history_file(self) -> Path:
        return self.home / "Library/Application Support/Quillmere/history.json"

    def assert_record(self, removed: int) -> None:
        records = json.loads(self.history_file().read_text())
        self.assertEqual([(record["operationType"], record["filesRemoved"]) for record in records],
                         [("safeCleanup", removed)])


if __name__ == "__main__":
    unittest.main()
