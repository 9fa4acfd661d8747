#!/usr/bin/python3
"""Sets the real program up in a home of its own, and has it remove itself again. The program that does so is a copy."""

import os
import plistlib
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from harness.case import EndToEndTest
from harness.desktop import wait_until
from harness.hands import WAYS, ByPointer

PROGRAM = Path(os.environ["QUILLMERE_PROGRAM"])
CONDITIONS = "Library/Application Support/Quillmere/FINAL_INSTALLATION_CONDITIONS_RULES_DISCLAIMER.md"
#: Root could write into the folder of all users, which no test may: runs a command on a system that is read-only but for
#: the temporary folder.
ON_READ_ONLY_SYSTEM = ["unshare", "--mount", "--propagation", "private", "sh", "-c",
                       'mount --bind /tmp /tmp && mount -o remount,bind,ro / && exec "$@"', "sh"]


def why_no_read_only_system() -> str:
    tried = subprocess.run([*ON_READ_ONLY_SYSTEM, "true"], capture_output=True, text=True, check=False)
    return tried.stderr if tried.returncode else ""


class SetupTest(EndToEndTest):
    def setUp(self):
        reason = why_no_read_only_system() if os.geteuid() == 0 else ""
        if reason and "CI" in os.environ:
            self.fail(reason)
        if reason:
            self.skipTest(reason)

    def begin(self, folder: str):
        parent = tempfile.TemporaryDirectory(prefix="q-setup-", dir="/tmp")
        self.addCleanup(parent.cleanup)
        self.home = Path(parent.name, "home")
        self.bundle = Path(parent.name, folder, "Quillmere.app")
        self.bundle.parent.mkdir(parents=True)
        shutil.copytree(PROGRAM.parents[1].parent, self.bundle, symlinks=True)
        for name in ("home", "tmp", "run"):
            Path(parent.name, name).mkdir(mode=0o700)
        self.parent = Path(parent.name)

    def run_program(self, bundle: Path):
        command = (ON_READ_ONLY_SYSTEM if os.geteuid() == 0 else []) + [str(bundle / "Contents/MacOS/quillmere")]
        self.program = self.start(command, {
            "HOME": str(self.home), "TMPDIR": str(self.parent / "tmp"), "XDG_RUNTIME_DIR": str(self.parent / "run"),
            "QT_QPA_PLATFORM": "xcb"}, folder=self.parent, is_first_start=True)
        self.application = self.program.application

    def stored(self) -> dict:
        file = self.home / "Library/Preferences/com.veltrane.quillmere.plist"
        return plistlib.loads(file.read_bytes()) if file.exists() else {}

    def walk(self, hands) -> None:
        self.application.find("heading", "Quillmere Setup Wizard")
        hands.press("Next")
        self.application.find("heading", "Privacy Policy")
        hands.press("Next")
        self.application.find("heading", "Conditions, Rules, and Disclaimers")
        hands.press("Install")
        self.application.find("heading", "Installation Completed!", patience=60)
        hands.press("Launch")
        self.application.wait_gone("dialog", "Quillmere Setup Wizard")

    def test_copies_itself_into_the_users_applications_and_starts_from_there_without_its_wizard(self):
        for way in WAYS:
            with self.subTest(way=way.__name__):
                self.begin("Down loads, ada's")
                self.run_program(self.bundle)
                self.walk(way(self.program))
                self.program.end()

                installed = self.home / "Applications/Quillmere.app"
                for path in ("Contents/MacOS/quillmere", "Contents/Info.plist"):
                    self.assertEqual((installed / path).read_bytes(), (self.bundle / path).read_bytes())
                self.assertTrue(os.access(installed / "Contents/MacOS/quillmere", os.X_OK))
                self.assertEqual(os.listdir(self.home / "Applications"), ["Quillmere.app"])
                self.assertTrue(self.stored()["hasSeenWelcome"])
                self.assertTrue((self.home / CONDITIONS).read_text().startswith("# Quillmere Installation Conditions"))
                entry = (self.home / ".local/share/applications/com.veltrane.quillmere.desktop").read_text()
                self.assertIn(f'Exec="{installed}/Contents/MacOS/quillmere"\n', entry)
                self.assertIn("Failed to copy to global /Applications: ", self.program.output())

                self.run_program(installed)
                self.application.find("list item", "Dashboard")
                self.assertEqual(self.application.all("dialog"), [])
                self.program.end()

    def test_removes_itself_with_all_that_it_has_stored(self):
        self.begin("pro grams")
        self.run_program(self.bundle)
        hands = ByPointer(self.program)
        self.walk(hands)
        self.program.end()
        shutil.rmtree(self.bundle)
        others = self.home / "Library/Preferences/org.example.other.plist"
        others.write_text("kept")

        installed = self.home / "Applications/Quillmere.app"
        self.run_program(installed)
        hands = ByPointer(self.program)
        hands.open("Settings")
        person = self.program.person
        person.click(person.scroll_to(self.application.find("frame"), "push button",
                                      "Remove App & Residuals (caches/settings)"))
        self.application.find("heading", "Delete App & All Data")
        hands.press("Delete App & All Data")

        wait_until(lambda: self.program.process.poll() is not None, "the end of the program")
        self.assertEqual(self.program.process.returncode, 0)
        wait_until(lambda: not installed.exists(), "the removal of the bundle")
        ours = [path for path in self.home.rglob("*") if "uillmere" in path.name]
        self.assertEqual(ours, [])
        self.assertEqual(others.read_text(), "kept")

    def test_comes_again_when_it_was_run_without_installing(self):
        self.begin("once")
        for _ in range(2):
            self.run_program(self.bundle)
            self.application.find("heading", "Quillmere Setup Wizard")
            ByPointer(self.program).press("Run without installing (one-time run)")
            self.application.wait_gone("dialog", "Quillmere Setup Wizard")
            self.program.end()
        self.assertNotIn("hasSeenWelcome", self.stored())
        self.assertFalse((self.home / "Applications").exists())


if __name__ == "__main__":
    unittest.main()
