"""Application bundles with what they leave in the home, one of each kind that a list must bear."""

from .workshop import KIB, Workshop

#: Name, identifier, version, size in KiB, and which leftovers there are: support, caches, preferences, container.
BUNDLES = (
    ("Painter", "com.example.Painter", "4.2.1", 5200, "scpk"),
    ("Notes & Sketches", "org.example.NotesAndSketches", "12.0", 2600, "sp"),
    ("Sound Studio", "com.example.soundstudio", "2026.3", 7100, "scp"),
    ("Zähler", "de.example.zaehler", "0.9", 480, "p"),
    ("Tiny", "com.example.tiny", "1", 12, ""),
)


def make(workshop: Workshop) -> None:
    for name, identifier, version, size, leftovers in BUNDLES:
        bundle(workshop, f"Applications/{name}.app", size,
               {"CFBundleIdentifier": identifier, "CFBundleShortVersionString": version, "CFBundleName": name},
               binary=size % 200 == 0)
        leave(workshop, name, identifier, leftovers)

    bundle(workshop, "Applications/No Identifier.app", 300, {"CFBundleName": "No Identifier"})
    workshop.tree("Library/Application Support/No Identifier", 40 * KIB, 2)
    workshop.file("Applications/Broken.app/Contents/Info.plist", "<plist><dict><key>CFBundle")
    workshop.tree("Applications/Broken.app/Contents/Resources", 200 * KIB, 2)
    workshop.tree("Applications/No List.app/Contents/Resources", 90 * KIB, 2)
    bundle(workshop, "Applications/Games/Nested.app", 150, {"CFBundleIdentifier": "com.example.nested"})
    workshop.file("Applications/Read me.txt", "Not an application.\n")


def bundle(workshop: Workshop, where: str, size: int, information: dict, binary: bool = False) -> None:
    name = where.rsplit("/", 1)[1].removesuffix(".app")
    workshop.property_list(f"{where}/Contents/Info.plist", information | {"CFBundleExecutable": name}, binary)
    workshop.executable(workshop.file(f"{where}/Contents/MacOS/{name}", "#!/bin/sh\nexec sleep 600\n"))
    workshop.tree(f"{where}/Contents/Resources", size * KIB, 5)


def leave(workshop: Workshop, name: str, identifier: str, leftovers: str) -> None:
    if "s" in leftovers:
        workshop.tree(f"Library/Application Support/{name}", 700 * KIB, 5)
    if "c" in leftovers:
        workshop.tree(f"Library/Caches/{identifier}", 1100 * KIB, 6)
        workshop.offer("User Cache", f"Library/Caches/{identifier}")
    if "p" in leftovers:
        workshop.property_list(f"Library/Preferences/{identifier}.plist", {"WindowWidth": 1100, "Opened": True})
    if "k" in leftovers:
        workshop.tree(f"Library/Containers/{identifier}/Data/tmp", 90 * KIB, 2)
