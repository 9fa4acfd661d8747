"""Tools with which the families make their files, and the account of what was made."""

import hashlib
import os
import plistlib
import random
import socket
from pathlib import Path

KIB = 1024
MIB = 1024 * KIB
#: 2026-11-20 08:00:00 UTC, from which all ages count backwards.
TODAY = 1795161600
DAY = 86400


class Workshop:
    """Makes files below one folder and remembers what must survive, what is offered and what is kept."""

    def __init__(self, folder: Path, size: str, seed: int):
        self.folder = folder
        self.home = folder / "home"
        self.temporary = folder / "tmp"
        self.is_small = size == "small"
        self.random = random.Random(seed)
        self.block = self.random.randbytes(MIB)
        self.untouchable: dict[str, str] = {}
        self.offered: list[dict[str, str]] = []
        self.offered_to_professionals: list[dict[str, str]] = []
        self.kept: list[str] = []

    def place(self, where: str | bytes) -> bytes:
        """The location of `where`, which is relative to the home, or to the temporary folder as "$tmp/..."."""
        name = os.fsencode(where)
        if name == b"$tmp" or name.startswith(b"$tmp/"):
            return os.path.join(os.fsencode(self.folder), b"tmp", name[5:]).rstrip(b"/")
        return os.path.join(os.fsencode(self.home), name)

    def directory(self, where: str | bytes) -> bytes:
        path = self.place(where)
        os.makedirs(path, exist_ok=True)
        return path

    def file(self, where: str | bytes, content: bytes | str | int, age: int = 30) -> bytes:
        """Writes `content`, or that many bytes of noise, last changed `age` days ago."""
        path = self.place(where)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "xb") as file:
            if isinstance(content, int):
                self._write_noise(file, content)
            else:
                file.write(content.encode() if isinstance(content, str) else content)
        self._set_age(path, age)
        return path

    def allocated(self, where: str, size: int, head: bytes = b"", age: int = 200) -> None:
        """A large file that really takes up its room, which the file system hands out without writing it."""
        path = self.file(where, head, age)
        with open(path, "r+b") as file:
            os.posix_fallocate(file.fileno(), 0, size)
        self._set_age(path, age)

    def sparse(self, where: str, size: int) -> None:
        """A file of this length that takes up next to nothing."""
        os.truncate(self.file(where, b"", 10), size)

    @staticmethod
    def executable(path: bytes) -> None:
        os.chmod(path, 0o755)

    def tree(self, where: str | bytes, total: int, files: int = 6) -> None:
        """About `total` bytes, a quarter of it in a small home, in `files` files, some deeper and some hidden."""
        total //= 4 if self.is_small else 1
        share = max(total // files, 1)
        for number in range(files):
            part = (b"", b"data/", b"data/deep/", b".hidden/")[number % 4]
            self.file(os.fsencode(where) + b"/" + part + b"%04x.bin" % (number * 2654435761 % 65536), share, number)

    def property_list(self, where: str, content, binary: bool = False) -> bytes:
        kind = plistlib.FMT_BINARY if binary else plistlib.FMT_XML
        return self.file(where, plistlib.dumps(content, fmt=kind, sort_keys=True))

    def link(self, where: str | bytes, target: str | bytes) -> None:
        path = self.place(where)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        os.symlink(os.fsencode(target), path)

    def socket(self, where: str) -> None:
        """The socket of a program that listens, as far as a look at the folder tells."""
        path = self.place(where)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        before = os.open(".", os.O_PATH)
        try:
            # A socket's name may have 108 bytes at most, so it is made from within its folder.
            os.chdir(os.path.dirname(path))
            with socket.socket(socket.AF_UNIX) as listener:
                listener.bind(os.path.basename(path))
        finally:
            os.fchdir(before)
            os.close(before)

    def document(self, where: str | bytes, content: bytes | str | int, age: int = 60) -> None:
        """A file that nothing may ever touch."""
        path = self.file(where, content, age)
        with open(path, "rb") as file:
            digest = hashlib.sha256(file.read()).hexdigest()
        self.untouchable[os.fsdecode(os.path.relpath(path, os.fsencode(self.folder)))] = digest

    def offer(self, category: str, where: str | bytes) -> None:
        """Says that the clean-up offers the folder `where` in the category of this name."""
        path = os.fsdecode(os.path.relpath(self.place(where), os.fsencode(self.folder)))
        # Two families may put things into one folder.
        if {"category": category, "path": path} not in self.offered:
            self.offered.append({"category": category, "path": path})

    def offer_to_professionals(self, category: str, where: str | bytes) -> None:
        """The same of the professional clean-up."""
        path = os.fsdecode(os.path.relpath(self.place(where), os.fsencode(self.folder)))
        self.offered_to_professionals.append({"category": category, "path": path})

    def keep(self, where: str | bytes) -> None:
        """Says that the folder `where` lies where things are offered and must not be."""
        self.kept.append(os.fsdecode(os.path.relpath(self.place(where), os.fsencode(self.folder))))

    def _write_noise(self, file, size: int) -> None:
        # A new start for each file, so that no two are alike.
        start = self.random.randrange(MIB)
        noise = self.block[start:] + self.block[:start]
        while size > 0:
            size -= file.write(noise[:size])

    @staticmethod
    def _set_age(path: bytes, age: int) -> None:
        moment = TODAY - age * DAY
        os.utime(path, (moment, moment))
