#!/usr/bin/python3
"""Uses screens of the real program in a sample home, and holds what they announced against what they did."""

import os
import plistlib
import unittest
from pathlib import Path

from harness.desktop import wait_until
from harness.hands import WAYS
from sample_home_case import SampleHomeCase  # Before what it tells the way to.
from sample_home import browsers, inspection, large_files, startup

TRASH = ".local/share/Trash"
#: What the program keeps of itself, and what the desktop keeps of any program.
OWN = (TRASH, "Library/Application Support/Quillmere", "Library/Preferences/com.veltrane.quillmere.plist", ".cache/dconf",
       ".config/dconf", ".cache/fontconfig", ".cache/mesa_shader_cache")


def entries(home: Path) -> set[str]:
    """All that is in the home, folders and links included, but for what nobody is asked about."""
    found = set()
    for parent, folders, files in os.walk(home):
        for name in folders + files:
            where = os.path.relpath(os.path.join(parent, name), home)
            if not any(where == own or where.startswith(own + "/") for own in OWN):
                found.add(where)
    return found


def below(places: set[str], roots: list[str]) -> set[str]:
    return {place for place in places if any(place == root or place.startswith(root + "/") for root in roots)}


class SampleHomeTest(SampleHomeCase):
    def in_each_way(self, act):
        """`act` may return what it was told would go with everything in it."""
        for way in WAYS:
            with self.subTest(way=way.__name__):
                self.make_home()
                self.before = entries(self.home)
                self.start_program(way)
                announced = act()
                damaged = {line.split(": home/")[1] for line in inspection.damage(self.folder)}
                self.assertEqual(damaged - below(damaged, announced or []), set())
                self.program.end()

    def rows(self, part: str) -> list[str]:
        return [item.name for item in self.application.all("list item") if part in item.name]

    def row(self, name: str) -> str:
        return wait_until(lambda: self.rows(f"{name}, "), f"the row of {name}")[0]

    def removed(self) -> set[str]:
        """Since the beginning; nothing may have come instead."""
        after = entries(self.home)
        self.assertEqual(after - self.before, set())
        return self.before - after

    def trashed(self) -> set[str]:
        folder = self.home / TRASH / "files"
        return set(os.listdir(folder)) if folder.is_dir() else set()

    def test_trashes_each_large_file_and_no_other(self):
        large = {where for where, size in large_files.SMALL if size >= large_files.BARELY_LARGE}
        self.in_each_way(lambda: self.trash_large_files(large))

    def trash_large_files(self, large: set[str]) -> None:
        self.hands.open("Large Files")
        self.hands.press("Start Scan")
        self.application.find("push button", "Name")
        announced = set()
        while rows := self.rows(str(self.home)):
            announced.add(os.path.relpath(rows[0].rsplit(", ", 1)[1], self.home))
            self.hands.choose_for(rows[0], "Move to Trash")
            self.hands.press("Move to Trash")
            self.application.wait_gone("list item", rows[0])

        self.assertEqual(announced, large)
        self.assertEqual(self.removed(), large)
        self.assertEqual(self.trashed(), {where.rsplit("/", 1)[1] for where in large})

    def test_cleans_each_browser_of_its_caches_alone(self):
        self.in_each_way(self.clean_browsers)

    def clean_browsers(self) -> None:
        self.hands.open("Browsers")
        names = {name for name, *_ in browsers.BROWSERS}
        wait_until(lambda: {row.split(",")[0] for row in self.rows(", Cache Size")} == names, "the browsers")
        for name in sorted(names):
            self.hands.press("Clean", of=name)
            wait_until(lambda: self.rows(f"{name}, Cache Size Zero"), f"{name} without caches")
            self.application.wait_gone("dialog")

        caches = [cache for _, _, own, _ in browsers.BROWSERS for cache in own]
        caches += [f"{folder}/{cache}" for folder, own, _ in browsers.LINUX for cache in own]
        caches.append(".cache/mozilla/firefox/8k2a1b3c.default-release/cache2")
        self.assertEqual(self.removed(), below(self.before, caches))
        self.assertEqual(self.trashed(), set())

    def test_switches_what_starts_and_back(self):
        self.in_each_way(self.switch_items)

    def switch_items(self) -> None:
        folder = self.home / "Library/LaunchAgents"
        agents = {name: content for name, content, _ in startup.AGENTS if isinstance(content, dict) and "Label" in content}
        self.hands.open("Startup Items")
        wait_until(lambda: self.rows("LaunchAgents/"), "the startup items")
        for name in ("com.example.backup.plist", "com.example.sync.plist", "com.example.nightly.plist"):
            others = {other: (folder / other).read_bytes() for other in os.listdir(folder) if other != name}
            self.switch(name, "Off")
            self.assertEqual(plistlib.loads((folder / name).read_bytes()), agents[name] | {"Disabled": True})
            self.switch(name, "On")
            self.assertEqual(plistlib.loads((folder / name).read_bytes()), agents[name] | {"Disabled": False})
            self.assertEqual({other: (folder / other).read_bytes() for other in others}, others)
        self.assertEqual(self.removed(), set())

    def switch(self, file: str, state: str) -> None:
        row = next(row for row in self.rows(file))
        self.hands.switch(row)
        wait_until(lambda: any(f", {state}, " in row for row in self.rows(file)), f"{file} to be {state}")

    def test_clears_and_uninstalls_an_application_and_nothing_beside_it(self):
        self.in_each_way(self.remove_painter)

    def remove_painter(self) -> list[str]:
        self.hands.open("Applications")
        self.application.wait_gone("dialog", "Scanning Applications")
        self.hands.pick(self.row("Painter"))
        announced = self.announced_leftovers()
        self.assertEqual(len(announced), 4)

        self.hands.press("Clear Application Data")
        self.hands.press("Clear Data")
        self.application.find("label", "No related leftovers found. The app is self-contained.")
        self.assertEqual(self.removed(), below(self.before, announced))
        self.assertEqual(self.trashed(), set())

        self.hands.press("Uninstall Completely")
        self.hands.press("Uninstall")
        wait_until(lambda: not (self.home / "Applications/Painter.app").exists(), "the application to go")
        self.assertEqual(self.removed(), below(self.before, announced + ["Applications/Painter.app"]))
        self.assertEqual(self.trashed(), {"Painter.app"})
        return announced

    def announced_leftovers(self) -> list[str]:
        rows = wait_until(lambda: self.rows(f", {self.home}/Library/"), "the leftovers")
        return [os.path.relpath(row.rsplit(", ", 1)[1], self.home) for row in rows]


if __name__ == "__main__":
    unittest.main()
