#!/usr/bin/python3
"""Uses the whole window on a machine that exists only in memory, where every figure is known."""

import os
import unittest

import roads
from harness.case import EndToEndTest
from harness.hands import WAYS, ByKeyboard, ByPointer

PROGRAM = os.environ["QUILLMERE_PRETEND_PROGRAM"]


class PretendMachineTest(EndToEndTest):
    def begin(self, way):
        self.program = self.start([PROGRAM])
        self.application = self.program.application
        self.hands = way(self.program)

    def test_opens_on_the_dashboard(self):
        self.begin(ByPointer)
        self.application.find("heading", "System Health")
        self.assertIn("selected", self.application.find("list item", "Dashboard").states())

    def test_cleans_what_it_finds_and_remembers_it(self):
        for way in WAYS:
            with self.subTest(way=way.__name__):
                self.begin(way)
                roads.scan(self.program, self.hands)
                self.application.find("label", "13.48 GB")
                self.assertEqual(roads.clean(self.program, self.hands),
                                 {"Space Freed": "13.45 GB", "Files Removed": "27", "Files Skipped": "1"})
                # The list that follows shows what could not be removed.
                self.application.find("label", "31 MB")
                self.assertEqual(roads.history(self.program, self.hands),
                                 ["Nov 21, 2026 at 9:12\u202fAM, Safe Cleanup, 13.45 GB, Completed"])
                self.program.end()

    def test_leaves_out_a_category_that_is_switched_off(self):
        for way in WAYS:
            with self.subTest(way=way.__name__):
                self.begin(way)
                roads.scan(self.program, self.hands)
                self.hands.toggle("User Cache")
                self.hands.toggle("Container Cache")
                self.application.find("label", "736 MB")
                self.assertEqual(roads.clean(self.program, self.hands)["Space Freed"], "705 MB")
                self.program.end()

    def test_cannot_clean_while_nothing_is_selected(self):
        self.begin(ByPointer)
        roads.scan(self.program, self.hands)
        self.hands.press("Deselect All")
        self.application.find("label", "Zero KB")
        self.hands.press("Clean")
        with self.assertRaises(AssertionError):
            ByKeyboard(self.program).press("Clean")
        self.assertEqual(self.application.all("heading", "Cleanup Report"), [])

        self.hands.press("Select All")
        self.application.find("label", "13.48 GB")
        self.hands.press("Clean")
        self.application.find("heading", "Cleanup Report")

    def test_goes_to_every_destination_by_keyboard_alone(self):
        self.begin(ByKeyboard)
        for destination in ("Safe Cleanup", "Settings", "History", "Tools", "Dashboard"):
            self.hands.open(destination)
            self.assertIn("selected", self.application.find("list item", destination).states())


if __name__ == "__main__":
    unittest.main()
