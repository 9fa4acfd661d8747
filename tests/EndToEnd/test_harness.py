#!/usr/bin/python3
"""Says whether the harness sees and does what a person would, on a small window made for it."""

import os
import tempfile
import unittest
from pathlib import Path

from harness.case import EndToEndTest
from harness.desktop import wait_until

SAMPLE = os.environ["QUILLMERE_HARNESS_SAMPLE"]


class HarnessTest(EndToEndTest):
    def setUp(self):
        self.program = self.start([SAMPLE])
        self.application = self.program.application
        self.person = self.program.person
        self.application.find("push button", "Press me")

    def label(self, text: str):
        return self.application.find("label", text, patience=5)

    def test_clicks_where_the_pointer_is_sent(self):
        self.person.click_on("push button", "Press me")
        self.label("Pressed 1 times")
        self.person.click_on("push button", "Press me")
        self.label("Pressed 2 times")

    def test_reaches_and_presses_a_button_by_keyboard_alone(self):
        self.person.reach("push button", "Press me")
        self.person.press("space")
        self.label("Pressed 1 times")

    def test_says_what_the_focus_passed_when_it_does_not_arrive(self):
        with self.assertRaisesRegex(AssertionError, "push button “Press me”"):
            self.person.reach("push button", "Not there", at_most=4)

    def test_types_into_a_field_and_reads_it(self):
        self.person.click_on("text", "Your name")
        self.person.type("Ada Lovelace")
        wait_until(lambda: self.application.find("text", "Your name").text == "Ada Lovelace", "the text", 5)

    def test_sees_only_what_is_on_the_screen(self):
        self.assertEqual(self.application.all("label", "More from "), [])
        self.person.click_on("check box", "Show more")
        self.label("More from ")
        self.assertIn("checked", self.application.find("check box", "Show more").states())
        self.person.click_on("check box", "Show more")
        self.application.wait_gone("label", "More from ", patience=5)

    def test_gives_up_on_what_never_comes(self):
        with self.assertRaisesRegex(TimeoutError, "button named “Not there”"):
            self.application.find("push button", "Not there", patience=0.3)

    def test_takes_a_picture_of_the_window_in_the_size_that_was_asked_for(self):
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder, "window.png")
            self.program.resize(600, 400)
            self.program.picture(file)
            self.assertEqual(self.desktop.run("identify", "-format", "%wx%h", str(file)), "600x400")

    def test_tells_in_its_outline_what_there_is(self):
        outline = self.application.outline()
        self.assertIn("push button “Press me”", outline)
        self.assertNotIn("More from", outline)


class DesktopTest(EndToEndTest):
    def test_keeps_the_machine_out_of_reach(self):
        environment = self.desktop.environment
        self.assertFalse(os.path.exists(environment["DBUS_SYSTEM_BUS_ADDRESS"].removeprefix("unix:path=")))
        self.assertNotIn("XDG_CONFIG_HOME", environment)
        for name in ("HOME", "XDG_RUNTIME_DIR"):
            self.assertTrue(environment[name].startswith(str(self.desktop.folder)), name)

    def test_ends_what_it_started(self):
        program = self.start([SAMPLE])
        identifier = program.process.pid
        program.end()
        self.assertFalse(os.path.exists(f"/proc/{identifier}"))


if __name__ == "__main__":
    unittest.main()
