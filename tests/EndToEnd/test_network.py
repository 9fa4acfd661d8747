#!/usr/bin/python3
"""Watches what the real program does on the network: nothing as it is built here, and one host where it has one."""

import json
import os
import re
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

from harness import settings
from harness.case import EndToEndTest
from harness.desktop import wait_until
from harness.hands import ByPointer

PROGRAM = os.environ["QUILLMERE_PROGRAM"]
PROGRAM_WITH_FEED = os.environ["QUILLMERE_PROGRAM_WITH_FEED"]
HOST = "feed.quillmere.test"
FEED_HOST = Path(__file__).with_name("feed_host.py")
SCREENS = ["Safe Cleanup", "Professional Cleanup", "Large Files", "Browsers", "System Data", "Startup Items",
           "Applications", "Tools", "History", "Settings", "Dashboard"]
CARD = "An offer. Of the day"


def why_no_own_network() -> str:
    tried = subprocess.run(["unshare", "--net", "--mount", "--propagation", "private", "ip", "link", "set", "lo", "up"],
                           capture_output=True, text=True, check=False)
    return tried.stderr if tried.returncode else ""


def number(value: int) -> bytes:
    return value.to_bytes(4, "big")


def box(kind: bytes, content: bytes) -> bytes:
    return number(8 + len(content)) + kind + content


class NetworkTest(EndToEndTest):
    def setUp(self):
        parent = tempfile.TemporaryDirectory(prefix="q-net-", dir="/tmp")
        self.addCleanup(parent.cleanup)
        self.folder = Path(parent.name)
        self.home = self.folder / "home"
        self.served = self.folder / "served"
        for folder in (self.home, self.served / "advapi", self.folder / "tmp"):
            folder.mkdir(parents=True)
        # Both programs are of the same version.
        settings.complete_setup(self.home, Path(PROGRAM))
        self.trace = self.folder / "trace"
        self.requests = self.folder / "requests"
        self.requests.touch()

    def traced(self, *command: str) -> list[str]:
        """Notes each address that the program and all that it starts connects to, or sends to without connecting."""
        return ["strace", "-D", "-f", "-qq", "-e", "trace=connect,sendto,sendmsg,sendmmsg", "-s", "200", "-o",
                str(self.trace), *command]

    def variables(self, **more: str) -> dict[str, str]:
        return {"HOME": str(self.home), "TMPDIR": str(self.folder / "tmp")} | more

    def internet_addresses(self) -> set[str]:
        """What the trace says of addresses of the internet, ports left out."""
        found = set()
        for line in self.trace.read_text(errors="replace").splitlines():
            if "sa_family=AF_INET" in line:
                found.update(re.findall(r'inet_(?:addr|pton)\((?:AF_INET6, )?"([^"]+)"', line))
        return found

    def visit(self, program, screens: list[str]) -> None:
        hands = ByPointer(program)
        for screen in screens:
            hands.open(screen)
            time.sleep(0.3)

    def find_own_promotion(self, program) -> None:
        wait_until(lambda: [item for item in program.application.all("push button")
                            if item.name.startswith("Farhop. ")], "the program's own promotion")

    def promote(self, media: str) -> None:
        (self.served / "advapi/adv.json").write_text(json.dumps(
            {"ads": [{"title": "An offer", "text": "Of the day", "link": "https://other.test/", "media": media}]}))

    def start_with_feed(self, **variables: str):
        reason = why_no_own_network()
        if reason and "CI" in os.environ:
            self.fail(reason)
        if reason:
            self.skipTest(reason)
        command = [sys.executable, "-B", str(FEED_HOST), HOST, str(self.served), str(self.requests), "--",
                   *self.traced(PROGRAM_WITH_FEED)]
        return self.start(command, self.variables(**variables))

    def pixels(self, box) -> bytes:
        """Of the card there, less its strip of text."""
        file = self.folder / "card.rgb"
        self.desktop.run("import", "-silent", "-window", "root", "-crop", f"{box.width - 40}x50+{box.x + 20}+{box.y + 12}",
                         "-depth", "8", f"rgb:{file}")
        return file.read_bytes()

    def film(self, source: str, file: Path) -> None:
        subprocess.run(["ffmpeg", "-loglevel", "error", "-f", "lavfi", "-i", source, "-pix_fmt", "yuv420p", "-c:v",
                        "libx264", str(file)], check=True)

    def film_that_cannot_be_decoded(self) -> bytes:
        """All that is said of its pictures is right, and they themselves are noise."""
        file = self.folder / "noise.mp4"
        self.film("color=size=320x200:rate=10:duration=1", file)
        film = file.read_bytes()
        begin = film.index(b"mdat") + 4
        length = int.from_bytes(film[begin - 8:begin - 4], "big") - 8
        return film[:begin] + os.urandom(length) + film[begin + length:]

    def wait_for_sign_of_a_movie(self, program) -> None:
        box = program.application.find("push button", CARD).extents
        wait_until(lambda: max(self.pixels(box)[::3]) > 150, "the sign of a movie")

    def has_begun_again_twice(self, reds: list[int], box) -> bool:
        reds.append(self.pixels(box)[0])
        return sum(later < earlier for earlier, later in zip(reds, reds[1:])) >= 2

    def test_connects_to_nothing_as_it_is_built_here(self):
        program = self.start(self.traced(PROGRAM), self.variables())
        self.find_own_promotion(program)
        self.visit(program, SCREENS)
        program.end()

        self.assertIn("AF_UNIX", self.trace.read_text(errors="replace"))
        self.assertEqual(self.internet_addresses(), set())

    def test_reads_the_feed_from_its_host_over_tls_and_goes_nowhere_else(self):
        subprocess.run(["convert", "-size", "400x252", "xc:red", str(self.served / "a.png")], check=True)
        self.promote(f"https://{HOST}/a.png")
        program = self.start_with_feed()

        box = program.application.find("push button", CARD).extents
        wait_until(lambda: self.pixels(box)[:3] == b"\xff\x00\x00", "the picture")
        self.visit(program, SCREENS)
        program.end()

        self.assertEqual({line.split('"')[1] for line in self.requests.read_text().splitlines()},
                         {"GET /advapi/adv.json HTTP/1.1", "GET /a.png HTTP/1.1"})
        self.assertLessEqual(self.internet_addresses(), {"127.0.0.1"})

    def test_plays_a_movie_again_and_again(self):
        source = "color=size=320x200:rate=10:duration=1,format=gbrp,geq=r='25*N':g=90:b='250-25*N'"
        self.film(source, self.served / "a.mp4")
        self.promote(f"https://{HOST}/a.mp4")
        program = self.start_with_feed(QT_QUICK_BACKEND="rhi", LIBGL_ALWAYS_SOFTWARE="1")
        box = program.application.find("push button", CARD).extents

        # The red of the movie grows from its first frame to its last: where it falls, the movie has begun again.
        reds = [self.pixels(box)[0]]
        self.assertTrue(wait_until(lambda: self.has_begun_again_twice(reds, box), "the movie's third time", 120))
        program.end()
        self.assertLessEqual(self.internet_addresses(), {"127.0.0.1"})

    def test_lives_through_movies_that_are_none_and_follows_them_nowhere(self):
        other = box(b"rdrf", number(0) + b"url https://other.quillmere.test/a.mov")
        places = box(b"dinf", box(b"dref", number(0) + number(1) + box(b"url ", number(1))))
        track = box(b"trak", box(b"tkhd", bytes(76) + number(320 << 16) + number(200 << 16))
                    + box(b"mdia", box(b"minf", places)))
        beginning = box(b"ftyp", b"qt  ")
        movies = {
            "noise": beginning + os.urandom(100_000),
            "another movie in its place": beginning + box(b"moov", box(b"rmra", box(b"rmda", other))),
            # Its boxes are in order, so it is the player that finds nothing in it.
            "no picture": beginning + box(b"moov", track) + box(b"mdat", os.urandom(100_000)),
            "noise for pictures": self.film_that_cannot_be_decoded(),
        }
        self.promote(f"https://{HOST}/a.mov")
        for name, content in movies.items():
            with self.subTest(name):
                (self.served / "a.mov").write_bytes(content)
                self.requests.write_text("")
                program = self.start_with_feed(QT_QUICK_BACKEND="rhi", LIBGL_ALWAYS_SOFTWARE="1")
                wait_until(lambda: "/a.mov" in self.requests.read_text(), "the request for the movie")
                # The player takes a while to find out, and the screens work meanwhile.
                self.visit(program, SCREENS[:3])
                self.wait_for_sign_of_a_movie(program)
                program.end()
                self.assertLessEqual(self.internet_addresses(), {"127.0.0.1"})

    def test_shows_its_own_promotion_for_a_feed_that_is_none(self):
        for feed in (b"", b"<html>", b"[" * 10_000 + b"]" * 10_000, b" " * 100_000_000 + b"[]"):
            with self.subTest(size=len(feed)):
                (self.served / "advapi/adv.json").write_bytes(feed)
                self.requests.write_text("")
                program = self.start_with_feed()
                wait_until(self.requests.read_text, "a request")
                self.find_own_promotion(program)
                program.end()


if __name__ == "__main__":
    unittest.main()
