"""A few files that are large and really take up their room."""

from .workshop import Workshop

MEGABYTE = 1_000_000

#: Folder and name, size in bytes; those of a small home first.
SMALL = (
    ("Movies/Summer 2025.mp4", 84 * MEGABYTE),
    ("Downloads/desktop-12.iso", 61 * MEGABYTE),
    ("Documents/Archive/photos 2019.zip", 53 * MEGABYTE),
    ("Downloads/just too small.mkv", 49 * MEGABYTE),
)
MORE = (
    ("Movies/Concert.mkv", 148 * MEGABYTE),
    ("Music/Mix.flac", 66 * MEGABYTE),
    ("Pictures/Panorama.heic", 57 * MEGABYTE),
    ("Downloads/Installer.pkg", 72 * MEGABYTE),
    ("Desktop/Scan of everything.pdf", 55 * MEGABYTE),
    ("Documents/database.bin", 91 * MEGABYTE),
)


def make(workshop: Workshop) -> None:
    for age, (where, size) in enumerate(SMALL if workshop.is_small else SMALL + MORE):
        workshop.allocated(where, size, age=40 * (age + 1))

    # Long by its length alone: next to nothing of it is on the disk.
    workshop.sparse("Downloads/sparse.img", 900 * MEGABYTE)
    # Passed over: hidden, inside a package, and below a folder named Library.
    if not workshop.is_small:
        workshop.allocated("Documents/.hidden.mkv", 50 * MEGABYTE)
        workshop.allocated("Documents/Tool.app/Contents/movie.mp4", 50 * MEGABYTE)
