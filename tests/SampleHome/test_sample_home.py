#!/usr/bin/python3
"""Says whether a sample home is what it claims to be."""

import hashlib
import os
import plistlib
import stat
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from xml.parsers.expat import ExpatError

sys.path.insert(0, str(Path(__file__).parent))
from sample_home import inspection, world  # noqa: E402

COMMAND = [sys.executable, str(Path(__file__).parent / "make_sample_home.py")]
LARGE = 50_000_000
LARGE_FILE_FOLDERS = ("Downloads", "Documents", "Desktop", "Movies", "Music", "Pictures")

#: Category, root, where each child keeps what is offered.
ROOTS = (
    ("User Cache", "home/Library/Caches", ""),
    ("User Cache", "home/.cache", ""),
    ("User Logs", "home/Library/Logs", ""),
    ("User Logs", "home/.config/Code/logs", ""),
    ("User Logs", "home/.vscode-server/data/logs", ""),
    ("User Logs", "home/.docker/desktop/log", ""),
    ("User Logs", "home/.local/state", "log"),
    ("Container Cache", "home/Library/Containers", "Data/Library/Caches"),
    ("Container Cache", "home/.var/app", "cache"),
    ("Container Cache", "home/snap", "common/.cache"),
    ("Temporary Files", "tmp", ""),
)


def allocated(folder: int) -> int:
    """Bytes that the regular files below take up, by descriptors, since some lie too deep for a path."""
    total = 0
    with os.scandir(folder) as entries:
        for entry in entries:
            if entry.is_dir(follow_symlinks=False):
                try:
                    below = os.open(entry.name, os.O_RDONLY | os.O_DIRECTORY | os.O_NOFOLLOW, dir_fd=folder)
                except PermissionError:
                    continue
                total += allocated(below)
                os.close(below)
            elif entry.is_file(follow_symlinks=False):
                total += entry.stat(follow_symlinks=False).st_blocks * 512
    return total


def allocated_below(path: Path) -> int:
    if path.is_symlink() or not path.is_dir():
        return 0
    folder = os.open(path, os.O_RDONLY | os.O_DIRECTORY)
    try:
        return allocated(folder)
    finally:
        os.close(folder)


def found_by_the_rules(folder: Path) -> set[tuple[str, str]]:
    """What stands in the roots, visible and not empty."""
    found = set()
    for category, root, suffix in ROOTS:
        for child in (folder / root).iterdir():
            item = child / suffix
            if not child.name.startswith(".") and allocated_below(item) > 0:
                found.add((category, str(item.relative_to(folder))))
    return found


def fingerprint(folder: Path) -> dict[str, str]:
    """Type, mode and contents of everything that was made; of large files the length alone."""
    prints = {}
    for parent, folders, files, descriptor in os.fwalk(folder):
        for name in folders + files:
            status = os.stat(name, dir_fd=descriptor, follow_symlinks=False)
            text = stat.filemode(status.st_mode)
            if stat.S_ISREG(status.st_mode) and status.st_size >= LARGE // 2:
                text += f" {status.st_size}"
            elif stat.S_ISREG(status.st_mode):
                with open(name, "rb", opener=lambda path, flags: os.open(path, flags, dir_fd=descriptor)) as file:
                    content = file.read().replace(os.fsencode(folder), b"")
                text += " " + hashlib.sha256(content).hexdigest()
            prints[os.path.relpath(os.path.join(parent, name), folder)] = text
    return prints


def readable(path: Path):
    """What a property list holds in the forms that Python reads; None for others and for broken ones."""
    try:
        return plistlib.loads(path.read_bytes())
    except (plistlib.InvalidFileException, ExpatError):
        return None


class SampleHomeTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.parent = tempfile.TemporaryDirectory(prefix="sample-home-test-")
        cls.folder = Path(cls.parent.name, "made")
        world.make(cls.folder)
        cls.account = inspection.account(cls.folder)

    @classmethod
    def tearDownClass(cls):
        inspection.remove(cls.folder)
        cls.parent.cleanup()

    def test_offers_exactly_what_it_says_apart_from_what_is_kept(self):
        offered = {(item["category"], item["path"]) for item in self.account["offered"]}
        kept = set(self.account["kept"])
        found = found_by_the_rules(self.folder)

        self.assertEqual({item for item in found if item[1] not in kept}, offered)
        self.assertEqual({path for _, path in found if path in kept}, kept)
        self.assertEqual(len(self.account["offered"]), len(offered))

    def test_keeps_documents_out_of_everything_that_is_offered(self):
        offered = [item["path"] + "/" for item in self.account["offered"]]
        inside = [name for name in self.account["untouchable"] if any(name.startswith(path) for path in offered)]
        self.assertEqual(inside, [])

    def test_offers_professionals_every_group_and_no_document(self):
        offered = self.account["offered to professionals"]
        self.assertEqual(len({item["category"] for item in offered}), 10)
        for item in offered:
            self.assertGreater(allocated_below(self.folder / item["path"]), 0, item["path"])
            self.assertEqual([name for name in self.account["untouchable"] if name.startswith(item["path"] + "/")], [])

    def test_begins_undamaged(self):
        self.assertGreater(len(self.account["untouchable"]), 40)
        self.assertEqual(inspection.damage(self.folder), [])

    def test_really_allocates_its_large_files(self):
        large = []
        for name in LARGE_FILE_FOLDERS:
            for parent, _, files in os.walk(self.folder / "home" / name):
                sizes = (Path(parent, file).lstat().st_blocks * 512 for file in files)
                large += [size for size in sizes if size >= LARGE]
        self.assertEqual(len(large), 10)
        self.assertLess((self.folder / "home/Downloads/sparse.img").stat().st_blocks * 512, LARGE)
        self.assertGreater((self.folder / "home/Downloads/sparse.img").stat().st_size, LARGE)

    def test_stays_small(self):
        self.assertLess(allocated_below(self.folder), 700_000_000)

    def test_starts_fifteen_things_by_itself_beside_what_cannot_start(self):
        agents = self.folder / "home/Library/LaunchAgents"
        read = {path.name: readable(path) for path in sorted(agents.glob("[!.]*.plist"))}
        dictionaries = [name for name, content in read.items() if isinstance(content, dict)]
        self.assertEqual(len(dictionaries), 10)
        self.assertEqual(read["old style.plist"], None)
        self.assertTrue((agents / "old style.plist").read_text().startswith("{ Label ="))

        entries = [path.read_text() for path in (self.folder / "home/.config/autostart").glob("*.desktop")]
        elsewhere = [text for text in entries if "OnlyShowIn=NoSuchDesktop;" in text or "TryExec=/nowhere" in text]
        self.assertEqual((len(entries), len(elsewhere)), (6, 2))
        self.assertEqual(len(dictionaries) + 1 + len(entries) - len(elsewhere), 15)

    def test_holds_names_that_are_no_text(self):
        names = os.listdir(os.fsencode(self.folder / "home/.cache"))
        self.assertIn(b"not utf-8 \xff\xfe", names)
        self.assertIn(b"line\nbreak", names)
        self.assertIn(b"-rf", names)
        self.assertIn(b"l" * 255, names)
        self.assertIn("right to left \u202egnp.exe".encode(), names)
        self.assertIn("שלום עולם".encode(), names)

    def test_points_every_variable_into_itself(self):
        lines = (self.folder / world.ENVIRONMENT).read_text().splitlines()
        variables = dict(line.split("=", 1) for line in lines)
        self.assertEqual(sorted(variables), ["HOME", "TMPDIR", "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME",
                                             "XDG_RUNTIME_DIR", "XDG_STATE_HOME"])
        for name, value in variables.items():
            self.assertTrue(value.startswith(f"{self.folder}/"), name)
        self.assertEqual(stat.S_IMODE(os.stat(variables["XDG_RUNTIME_DIR"]).st_mode), 0o700)


class MakingTest(unittest.TestCase):
    def setUp(self):
        self.parent = tempfile.TemporaryDirectory(prefix="sample-home-test-")
        self.addCleanup(self.parent.cleanup)
        self.folder = Path(self.parent.name, "made")

    def make(self, *arguments: str, folder: Path | None = None) -> subprocess.CompletedProcess:
        folder = folder or self.folder
        result = subprocess.run([*COMMAND, str(folder), *arguments], capture_output=True, text=True, check=False)
        if (folder / world.MARKER).exists():
            self.addCleanup(lambda: folder.exists() and inspection.remove(folder))
        return result

    def test_refuses_a_folder_in_which_there_is_something(self):
        self.folder.mkdir()
        (self.folder / "precious").write_text("x")

        result = self.make()

        self.assertEqual(result.returncode, 2)
        self.assertIn("is not empty", result.stderr)
        self.assertEqual(os.listdir(self.folder), ["precious"])

    def test_makes_the_same_home_from_the_same_seed(self):
        self.assertEqual(self.make("--seed", "7").returncode, 0)
        again, other = Path(self.parent.name, "again"), Path(self.parent.name, "other")
        self.make("--seed", "7", folder=again)
        self.make("--seed", "8", folder=other)

        self.assertEqual(fingerprint(self.folder), fingerprint(again))
        self.assertNotEqual(fingerprint(self.folder), fingerprint(other))

    def test_notices_damage(self):
        self.make()
        (self.folder / "home/.ssh/id_ed25519").write_text("changed")
        (self.folder / "home/Documents/Taxes/2025.ods").unlink()

        result = self.make("--check")

        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stdout.splitlines(),
                         ["changed: home/.ssh/id_ed25519", "missing: home/Documents/Taxes/2025.ods"])

    def test_takes_away_what_it_made_and_nothing_else(self):
        stranger = Path(self.parent.name, "stranger")
        stranger.mkdir()
        (stranger / "precious").write_text("x")
        self.make()

        self.assertEqual(self.make("--remove").returncode, 0)
        self.assertFalse(self.folder.exists())
        self.assertEqual(self.make("--remove", folder=stranger).returncode, 2)
        self.assertTrue((stranger / "precious").exists())

    def test_writes_records_of_earlier_clean_ups_when_asked(self):
        self.make("--history")
        self.assertTrue((self.folder / "home/Library/Application Support/Quillmere/history.json").is_file())


if __name__ == "__main__":
    unittest.main()
