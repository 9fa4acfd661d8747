"""Applications with what they leave in the home, one of each kind that a list must bear."""

import os

from .workshop import KIB, Workshop

#: Name, identifier, version, size in KiB, and which leftovers there are: support, caches, preferences, container.
BUNDLES = (
    ("Painter", "com.example.Painter", "4.2.1", 5200, "scpk"),
    ("Notes & Sketches", "org.example.NotesAndSketches", "12.0", 2600, "sp"),
    ("Sound Studio", "com.example.soundstudio", "2026.3", 7100, "scp"),
    ("Zähler", "de.example.zaehler", "0.9", 480, "p"),
    ("Tiny", "com.example.tiny", "1", 12, ""),
    ("Map Room", "com.example.maproom", "2.8", 3300, "sc"),
    ("Слайды", "ru.example.slides", "6.0.1", 1900, "spk"),
    ("Notes%2FArchive", "org.example.notesarchive", "3", 700, "s"),
    ("An Image Manipulation Program of Uncommon Length", "org.example.image", "3.0.0-beta.12+build.20261120", 2300, "sc"),
)

#: File, and which folders of the home hold something of its identifier.
APP_IMAGES = (
    ("Applications/Slicer-2.7.AppImage", "org.example.slicer", (".config", ".local/share")),
    (".local/bin/whiteboard.appimage", None, ()),
)
#: Identifier, program, and the same folders.
OWN_ENTRIES = (
    ("studio-ide", ".local/opt/studio-ide/bin/studio", (".config", ".local/state")),
    ("pocket-tool", ".local/bin/pocket-tool", (".config",)),
    ("project-runner", "Projects/runner/run", ()),
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
    make_hostile(workshop)
    make_beside_bundles(workshop)


def make_hostile(workshop: Workshop) -> None:
    """Bundles whose information would lead elsewhere, or nowhere, if it were believed."""
    bundle(workshop, "Applications/Evil.app", 40, {"CFBundleIdentifier": "../../Documents"})
    bundle(workshop, "Applications/Above.app", 40, {"CFBundleIdentifier": ".."})
    workshop.directory("Applications/Folder for List.app/Contents/Info.plist")
    os.mkfifo(os.path.join(workshop.directory("Applications/Pipe.app/Contents"), b"Info.plist"))
    workshop.link("Applications/Nowhere.app", "Gone.app")


def make_beside_bundles(workshop: Workshop) -> None:
    for where, identifier, folders in APP_IMAGES:
        program = workshop.file(where, 900 * KIB)
        workshop.executable(program)
        if identifier:
            entry(workshop, identifier, "Slicer", program)
            leave_named(workshop, identifier, folders)
    for identifier, where, folders in OWN_ENTRIES:
        program = workshop.file(where, "#!/bin/sh\nexec sleep 600\n")
        workshop.executable(program)
        entry(workshop, identifier, identifier.replace("-", " ").title(), program)
        leave_named(workshop, identifier, folders)
    workshop.tree(".local/opt/studio-ide/lib", 2600 * KIB, 5)


def entry(workshop: Workshop, identifier: str, name: str, program: bytes) -> None:
    workshop.file(f".local/share/applications/{identifier}.desktop",
                  f"[Desktop Entry]\nType=Application\nName={name}\nExec=\"{os.fsdecode(program)}\" %U\n")


def leave_named(workshop: Workshop, identifier: str, folders: tuple[str, ...]) -> None:
    for folder in folders:
        workshop.tree(f"{folder}/{identifier}", 120 * KIB, 3)


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
