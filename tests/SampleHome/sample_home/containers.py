"""The caches of applications that live in containers."""

from .workshop import KIB, Workshop

MAC = (
    ("com.apple.mail", 2300, 10),
    ("com.apple.Preview", 540, 5),
    ("com.apple.Safari", 1900, 12),
    ("com.example.Painter", 4400, 18),
)
FLATPAK = (
    ("org.gnome.Calendar", 380, 6),
    ("org.gimp.GIMP", 2700, 16),
    ("com.spotify.Client", 6200, 22),
)
SNAP = (
    ("firefox", 5100, 20),
    ("chromium", 3600, 15),
)


def make(workshop: Workshop) -> None:
    for name, size, files in MAC:
        cache = f"Library/Containers/{name}/Data/Library/Caches"
        workshop.tree(cache, size * KIB, files)
        workshop.offer("Container Cache", cache)
        workshop.document(f"Library/Containers/{name}/Data/Documents/kept.txt", f"of {name}\n")
    for name, size, files in FLATPAK:
        cache = f".var/app/{name}/cache"
        workshop.tree(cache, size * KIB, files)
        workshop.offer("Container Cache", cache)
        workshop.document(f".var/app/{name}/config/settings.ini", f"[{name}]\n")
        workshop.document(f".var/app/{name}/data/library.db", f"of {name}\n")
    for name, size, files in SNAP:
        cache = f"snap/{name}/common/.cache"
        workshop.tree(cache, size * KIB, files)
        workshop.offer("Container Cache", cache)
        workshop.document(f"snap/{name}/common/profile.ini", f"[{name}]\n")

    workshop.document("Library/Containers/com.example.NoCache/Data/Documents/kept.txt", "of no cache\n")
    workshop.document(".var/app/org.example.NoCache/config/settings.ini", "[none]\n")
