#!/usr/bin/python3
"""Makes the package and looks into it, as the desktop and the package manager will."""

import gzip
import os
import re
import stat
import struct
import subprocess
import tempfile
import unittest
from pathlib import Path

import made_package

IDENTIFIER = "com.veltrane.quillmere"
BUNDLE = "usr/lib/quillmere/Quillmere.app/Contents"
COMMANDS = {"diskutil", "ditto", "dscacheutil", "killall", "lsregister", "mdutil", "osascript", "pmset", "ps", "purge"}


def run(*command) -> subprocess.CompletedProcess:
    return subprocess.run([str(word) for word in command], capture_output=True, text=True, check=False)


def files_brought_by(depends: str) -> set[str]:
    """Those of the packages in such a field and of all that they need, each without a choice, as installed here."""
    shown = run("dpkg-query", "--show", "--showformat", "${Package}\t${Pre-Depends}, ${Depends}\n").stdout
    needs = dict(line.split("\t", 1) for line in shown.splitlines())
    brought, waiting = set(), [depends]
    while waiting:
        named = {each.split()[0].split(":")[0] for each in waiting.pop().split(",") if each.strip() and "|" not in each}
        for package in (named & needs.keys()) - brought:
            brought.add(package)
            waiting.append(needs[package])
    return set(run("dpkg-query", "--listfiles", *brought).stdout.splitlines())


class PackageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="q-package-")
        cls.addClassCleanup(folder.cleanup)
        cls.package = made_package.make(Path(folder.name))
        cls.root = Path(folder.name) / "root"
        subprocess.run(["dpkg-deb", "--extract", cls.package, cls.root], check=True)

    def field(self, name: str) -> str:
        return run("dpkg-deb", "--field", self.package, name).stdout.strip()

    def assert_succeeds(self, ended: subprocess.CompletedProcess) -> None:
        self.assertEqual((ended.returncode, ended.stdout + ended.stderr), (0, ended.stdout + ended.stderr))

    def test_says_what_it_is(self):
        self.assertEqual(self.field("Package"), "quillmere")
        self.assertEqual(self.field("Version"), made_package.VERSION)
        self.assertEqual(self.field("Section"), "utils")
        self.assertTrue(self.field("Description").startswith("maintenance of one user's own machine"))
        self.assertIn(" @", self.field("Maintainer").replace("<quillmere@", " @"))

    def test_needs_what_the_program_loads(self):
        needed = set(re.findall(r"^([a-z0-9.+-]+)", self.field("Depends").replace(", ", "\n"), re.MULTILINE))
        self.assertLessEqual({"libqt6quick6", "libqt6network6", "qml6-module-qtquick", "qml6-module-qtmultimedia",
                              "qml6-module-qtquick-dialogs", "pkexec"}, needed)

    def test_needs_each_module_that_a_screen_imports(self):
        sources = Path(__file__).resolve().parents[2] / "src/Views"
        imports = {name for file in sources.rglob("*.qml")
                   for name in re.findall(r"^import (Qt[\w.]+)", file.read_text(), re.MULTILINE)}
        self.assertIn("QtQuick", imports)
        for name in imports:
            with self.subTest(name=name):
                self.assertIn("qml6-module-" + name.lower().replace(".", "-"), self.field("Depends"))

    def test_brings_what_plays_the_movies_of_promotions(self):
        files = files_brought_by(self.field("Depends"))
        self.assertTrue([file for file in files if file.endswith("/plugins/multimedia/libffmpegmediaplugin.so")])
        self.assertTrue([file for file in files if re.search(r"/libavcodec\.so\.\d+$", file)])
        self.assertRegex(run("ffmpeg", "-hide_banner", "-decoders").stdout, r"(?m)^ V\S+ h264 ")

    def test_holds_the_whole_bundle(self):
        contents = self.root / BUNDLE
        self.assertTrue(os.access(contents / "MacOS/quillmere", os.X_OK))
        self.assertTrue((contents / "Info.plist").is_file())
        self.assertTrue((contents / "Resources/app_logo.png").is_file())
        helpers = {file.name for file in (contents / "Helpers").iterdir()}
        self.assertLessEqual(COMMANDS, helpers)
        self.assertEqual(helpers, {file.name for file in (made_package.BUILD / "Quillmere.app/Contents/Helpers").iterdir()})
        for helper in helpers:
            self.assertTrue(os.access(contents / "Helpers" / helper, os.X_OK), helper)

    def test_starts_by_its_name(self):
        link = self.root / "usr/bin/quillmere"
        self.assertTrue(link.is_symlink())
        self.assertEqual(link.resolve(), (self.root / BUNDLE / "MacOS/quillmere").resolve())

    def test_holds_the_administrator_program_where_the_policy_names_it(self):
        policies = list((self.root / "usr/share/polkit-1/actions").glob("*.policy"))
        named = {path for policy in policies
                 for path in re.findall(r'exec\.path">([^<]+)<', policy.read_text())}
        self.assertEqual(named, {"/usr/libexec/quillmere/quillmere-admin"})
        for path in named:
            self.assertTrue(os.access(self.root / path[1:], os.X_OK))
        self.assertTrue(os.access(self.root / "usr/libexec/quillmere/quillmere-keepawake", os.X_OK))

    def test_gives_nobody_a_privilege(self):
        listing = run("dpkg-deb", "--contents", self.package).stdout.splitlines()
        self.assertTrue(listing)
        self.assertEqual({line.split()[1] for line in listing}, {"root/root"})
        for file in self.root.rglob("*"):
            mode = file.lstat().st_mode
            self.assertFalse(mode & (stat.S_ISUID | stat.S_ISGID), file)
            self.assertTrue(file.is_symlink() or not mode & (stat.S_IWGRP | stat.S_IWOTH), file)

    def test_leaves_no_path_of_the_build_in_its_programs(self):
        contents = self.root / BUNDLE
        for program in [*contents.glob("MacOS/*"), *contents.glob("Helpers/*")]:
            sections = run("readelf", "--dynamic", program).stdout
            self.assertIn("NEEDED", sections)
            self.assertNotRegex(sections, "RPATH|RUNPATH", program)

    def test_is_found_by_the_desktop(self):
        entry = self.root / f"usr/share/applications/{IDENTIFIER}.desktop"
        checked = run("desktop-file-validate", entry)
        self.assertEqual((checked.returncode, checked.stdout + checked.stderr), (0, ""))
        self.assertIn("Exec=quillmere\n", entry.read_text())
        for language in ("es", "ru"):
            for key in ("GenericName", "Comment", "Keywords"):
                self.assertIn(f"\n{key}[{language}]=", entry.read_text())

    def test_is_shown_by_software_centres(self):
        self.assert_succeeds(run("appstreamcli", "validate", "--no-net",
                                 self.root / f"usr/share/metainfo/{IDENTIFIER}.metainfo.xml"))

    def test_has_its_icon_in_every_size(self):
        icons = self.root / "usr/share/icons/hicolor"
        for side in (16, 22, 24, 32, 48, 64, 128, 256, 512):
            header = (icons / f"{side}x{side}/apps/{IDENTIFIER}.png").read_bytes()[:24]
            self.assertEqual(header[:8], b"\x89PNG\r\n\x1a\n")
            self.assertEqual(struct.unpack(">II", header[16:]), (side, side))
        self.assertTrue((icons / f"scalable/apps/{IDENTIFIER}.svg").is_file())

    def test_has_a_manual_page_that_reads_without_a_warning(self):
        page = self.root / "usr/share/man/man1/quillmere.1.gz"
        shown = run("man", "--warnings", "--local-file", page)
        self.assertEqual((shown.returncode, shown.stderr), (0, ""))
        self.assertIn("quillmere - maintenance", shown.stdout)

    def test_tells_of_its_changes_and_its_rights(self):
        documents = self.root / "usr/share/doc/quillmere"
        changes = gzip.decompress((documents / "changelog.gz").read_bytes()).decode()
        self.assertTrue(changes.startswith(f"quillmere ({made_package.VERSION}) "))
        self.assertTrue((documents / "copyright").is_file())

    def test_pleases_the_checker_of_packages(self):
        checked = run("lintian", "--fail-on", "error", "--no-tag-display-limit", self.package)
        self.assert_succeeds(checked)


if __name__ == "__main__":
    unittest.main()
