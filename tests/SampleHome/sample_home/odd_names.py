"""Names and links that have broken programs before."""

import os

from .workshop import KIB, Workshop

NAMES = (
    b"not utf-8 \xff\xfe",
    b"line\nbreak",
    "right to left \u202egnp.exe".encode(),
    "שלום עולם".encode(),
    "emoji 🧹 and e\u0301".encode(),
    b"-rf",
    b" leading and trailing blank ",
    b"quote ' \" ` $(touch x) ; & |",
    b"back\\slash %41 %s",
    b"~",
    b"l" * 255,
)


def make(workshop: Workshop) -> None:
    for number, name in enumerate(NAMES):
        for root in (b"Library/Caches/", b".cache/"):
            workshop.tree(root + name, (20 + number) * KIB, 2)
            workshop.offer("User Cache", root + name)
        workshop.file(b"Documents/Odd names/" + name, b"an odd name\n")

    links(workshop)
    deep_folder(workshop, b".cache/deep")
    workshop.offer("User Cache", ".cache/deep")

    workshop.tree("Library/Caches/com.example.unreadable/open", 50 * KIB, 2)
    workshop.offer("User Cache", "Library/Caches/com.example.unreadable")
    unreadable = workshop.directory("Library/Caches/com.example.unreadable/secret")
    workshop.file("Library/Caches/com.example.unreadable/secret/file", 4 * KIB)
    os.chmod(unreadable, 0)


def links(workshop: Workshop) -> None:
    documents = os.fsdecode(workshop.place("Documents"))
    for root in ("Library/Caches", ".cache", "$tmp"):
        workshop.link(f"{root}/link to Documents", documents)
        workshop.link(f"{root}/dangling", "/nowhere/at/all")
        workshop.link(f"{root}/loop", "loop")
        workshop.link(f"{root}/only links/to Documents", documents)
        workshop.link(f"{root}/only links/to the home", os.fsdecode(workshop.home))
    workshop.tree("Library/Caches/com.example.linked", 30 * KIB, 2)
    workshop.link("Library/Caches/com.example.linked/to Documents", documents)
    workshop.offer("User Cache", "Library/Caches/com.example.linked")
    workshop.link("Documents/link to a cache", "../.cache/thumbnails")


def deep_folder(workshop: Workshop, where: bytes) -> None:
    """Deeper than any path may be long, so that it can be walked only step by step."""
    step = b"d" * 200
    folder = os.open(workshop.directory(where), os.O_RDONLY | os.O_DIRECTORY)
    for _ in range(30):
        os.mkdir(step, dir_fd=folder)
        below = os.open(step, os.O_RDONLY | os.O_DIRECTORY, dir_fd=folder)
        os.close(folder)
        folder = below
    file = os.open(b"at the bottom", os.O_WRONLY | os.O_CREAT, 0o600, dir_fd=folder)
    os.write(file, workshop.block[:8 * KIB])
    os.close(file)
    os.close(folder)
