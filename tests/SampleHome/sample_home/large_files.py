"""A few files that are large and really take up their room: one of each type, and some on either side of the limit."""

import os

from .workshop import Workshop

MEGABYTE = 1_000_000
#: The first whole number of blocks that reaches the limit of 50 MB, and the last that does not.
BARELY_LARGE = 50_003_968
BARELY_SMALL = 49_999_872

#: Folder and name, size in bytes. What a disk without much room gets, and what any other gets as well.
FEW = (
    ("Movies/Summer 2025.mp4", 60 * MEGABYTE),
    ("Downloads/desktop-12.iso", 57 * MEGABYTE),
    ("Documents/Archive/photos 2019.zip", 53 * MEGABYTE),
)
SMALL = FEW + (
    ("Music/Mix 10.flac", 52 * MEGABYTE),
    ("Music/Mix 2.flac", 52 * MEGABYTE),
    ("Pictures/Panorama.heic", 51 * MEGABYTE),
    ("Downloads/Installer.pkg", 54 * MEGABYTE),
    ("Downloads/Old program.app", 51 * MEGABYTE),
    ("Desktop/Scan of everything.pdf", 51 * MEGABYTE),
    ("Documents/barely large.bin", BARELY_LARGE),
    ("Documents/barely too small.bin", BARELY_SMALL),
)
MORE = (
    ("Movies/Concert.mkv", 148 * MEGABYTE),
    ("Videos/Birthday.mov", 66 * MEGABYTE),
    ("Downloads/desktop-11.iso", 72 * MEGABYTE),
    ("Documents/database.bin", 91 * MEGABYTE),
)
#: How often the room for the files must be there before they are made.
ROOM_TO_SPARE = 3


def make(workshop: Workshop) -> None:
    files = SMALL if workshop.is_small else SMALL + MORE
    if not has_room(workshop, sum(size for _, size in files)):
        files = FEW
    for age, (where, size) in enumerate(files):
        workshop.allocated(where, size, age=40 * (age + 1))

    # Long by its length alone: next to nothing of it is on the disk.
    workshop.sparse("Downloads/sparse.img", 900 * MEGABYTE)
    # Passed over: hidden, inside a package, and below a folder named Library.
    if not workshop.is_small:
        workshop.allocated("Documents/.hidden.mkv", BARELY_LARGE)
        workshop.allocated("Documents/Tool.app/Contents/movie.mp4", BARELY_LARGE)
        workshop.allocated("Documents/Library/movie.mp4", BARELY_LARGE)


def has_room(workshop: Workshop, size: int) -> bool:
    disk = os.statvfs(workshop.home)
    return disk.f_bavail * disk.f_frsize > ROOM_TO_SPARE * size
