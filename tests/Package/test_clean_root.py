#!/usr/bin/python3
"""Installs the package on a Debian that has nothing but its base, uses the program there, updates it and takes it away.
It fetches some hundred megabytes from the Debian mirror that this machine uses, so it runs with the long tests alone.
Needs root. The Debian lies in a temporary folder, in namespaces of its own, and goes with the test."""

import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import made_package

SUITE = "bookworm"
SKIPPED = 77
#: Everything that is started inside ends with the command.
INSIDE = ["unshare", "--mount", "--pid", "--fork", "--kill-child", "--propagation", "private", "sh", "-c",
          'mount -t proc proc "$1/proc" && mount --rbind /dev "$1/dev" && exec chroot "$@"', "sh"]
#: Starts the program for an ordinary user on a screen of its own, without any network, waits for its window and for
#: what it says of itself, and ends it.
USE = r"""
set -eu
export HOME=/home/ada XDG_RUNTIME_DIR=/tmp/run-ada LANG=C.UTF-8
mkdir -p -m 700 $XDG_RUNTIME_DIR
# The screen of the time before ended with all else.
rm -f /tmp/.X7-lock /tmp/.X11-unix/X7
Xvfb :7 -screen 0 1200x800x24 -nolisten tcp >/dev/null 2>&1 &
export DISPLAY=:7
for wait in $(seq 50); do [ -S /tmp/.X11-unix/X7 ] && break; sleep 0.2; done
openbox >/dev/null 2>&1 &
quillmere >/tmp/quillmere.log 2>&1 &
program=$!
for wait in $(seq 100); do
    window=$(xdotool search --onlyvisible --name '^Quillmere$' 2>/dev/null | head -n 1) && [ -n "$window" ] && break
    sleep 0.2
done
[ -n "${window:-}" ] || { cat /tmp/quillmere.log; exit 1; }
sleep 3
import -silent -window root /tmp/picture.png
kill -TERM $program
status=0
wait $program || status=$?
[ $status -eq 143 ]
cat /tmp/quillmere.log
"""


def mirror() -> str:
    sites = subprocess.run(["apt-get", "indextargets", "--format", "$(SITE) $(CODENAME)"], capture_output=True,
                           text=True, check=True).stdout.splitlines()
    return next(line.split()[0] for line in sites if line.endswith(f" {SUITE}") and "debian" in line)


class CleanRootTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="q-root-", dir="/var/tmp")
        cls.addClassCleanup(folder.cleanup)
        cls.folder = Path(folder.name)
        cls.root = cls.folder / "debian"
        cls.package = made_package.make(cls.folder)
        subprocess.run(["debootstrap", "--variant=minbase", SUITE, cls.root, mirror()], check=True,
                       stdout=subprocess.DEVNULL)
        cls.inside("apt-get", "install", "--quiet", "--yes", "--no-install-recommends", "xvfb", "xdotool",
                   "imagemagick", "dbus", "openbox")
        cls.inside("useradd", "--create-home", "ada")

    @classmethod
    def inside(cls, *command: str, own_network: bool = False) -> str:
        """Runs a command inside to its end, and gives what it prints."""
        network = ["unshare", "--net"] if own_network else []
        ended = subprocess.run([*network, *INSIDE, cls.root, *command], capture_output=True, text=True, check=False,
                               env={"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "DEBIAN_FRONTEND": "noninteractive"})
        if ended.returncode:
            raise AssertionError(f"{command}: {ended.returncode}\n{ended.stdout}{ended.stderr}")
        return ended.stdout

    def install(self, package: Path) -> None:
        copy = self.root / "tmp" / package.name
        copy.write_bytes(package.read_bytes())
        self.inside("apt-get", "install", "--quiet", "--yes", "--no-install-recommends", "--reinstall",
                    f"/tmp/{package.name}")

    def newer(self) -> Path:
        """The same package under a later version."""
        unpacked = self.folder / "unpacked"
        subprocess.run(["dpkg-deb", "--raw-extract", self.package, unpacked], check=True)
        control = unpacked / "DEBIAN/control"
        control.write_text(re.sub(r"(?m)^Version: .*$", r"\g<0>+1", control.read_text()))
        package = self.folder / "newer.deb"
        subprocess.run(["dpkg-deb", "--root-owner-group", "--build", unpacked, package], check=True,
                       stdout=subprocess.DEVNULL)
        return package

    def use(self) -> str:
        return self.inside("runuser", "--user", "ada", "--", "dbus-run-session", "sh", "-c", USE, own_network=True)

    def installed_version(self) -> str:
        return self.inside("dpkg-query", "--show", "--showformat", "${Version} ${db:Status-Status}", "quillmere")

    def test_installs_starts_updates_and_goes(self):
        self.install(self.package)
        self.assertEqual(self.installed_version(), f"{made_package.VERSION} installed")
        files = [line for line in self.inside("dpkg", "--listfiles", "quillmere").splitlines() if "quillmere" in line]
        self.assertGreater(len(files), 10)
        said = self.use()
        self.assertNotIn("module", said)
        self.assertNotIn("rror", said)
        if picture := os.environ.get("QUILLMERE_PICTURE"):
            Path(picture).write_bytes((self.root / "tmp/picture.png").read_bytes())

        self.install(self.package)
        self.install(self.newer())
        self.assertEqual(self.installed_version(), f"{made_package.VERSION}+1 installed")
        self.use()

        self.inside("apt-get", "purge", "--quiet", "--yes", "quillmere")
        left = [file for file in files if os.path.lexists(self.root / file[1:])]
        self.assertEqual(left, [])
        self.assertTrue((self.root / "home/ada").is_dir())


if __name__ == "__main__":
    if "QUILLMERE_LONG_TESTS" not in os.environ:
        print("It runs with the long tests.")
        sys.exit(SKIPPED)
    if os.geteuid() != 0:
        print("It needs root.")
        sys.exit(1 if "CI" in os.environ else SKIPPED)
    unittest.main()
