"""The caches of applications, in both places where they lie."""

from .workshop import KIB, MIB, Workshop

#: Name of the folder, size in KiB, count of files.
MAC = (
    ("com.apple.Safari", 5200, 24),
    ("com.apple.helpd", 310, 5),
    ("com.apple.iconservices", 840, 9),
    ("com.spotify.client", 9600, 30),
    ("com.tinyspeck.slackmacgap", 3100, 14),
    ("org.videolan.vlc", 420, 7),
    ("org.whispersystems.signal-desktop.ShipIt", 1500, 4),
    ("Homebrew", 4100, 11),
    ("us.zoom.xos", 660, 6),
)
LINUX = (
    ("thumbnails/large", 6100, 60),
    ("thumbnails/normal", 1800, 40),
    ("mesa_shader_cache", 2900, 32),
    ("fontconfig", 700, 12),
    ("mozilla/firefox/8k2a1b3c.default-release/cache2", 8800, 44),
    ("google-chrome/Default/Cache", 7400, 36),
    ("gstreamer-1.0", 240, 2),
    ("spotify/Storage", 5600, 20),
    ("gnome-software", 3300, 8),
    ("ccache", 4700, 50),
    ("go-build", 3900, 25),
    ("bazel/_bazel_ada/install", 2600, 6),
    ("Proton", 150, 3),
)


def make(workshop: Workshop) -> None:
    for name, size, files in MAC:
        workshop.tree(f"Library/Caches/{name}", size * KIB, files)
    for name, size, files in LINUX:
        workshop.tree(f".cache/{name}", size * KIB, files)
    for name in dict.fromkeys(name.split("/")[0] for name, _, _ in MAC):
        workshop.offer("User Cache", f"Library/Caches/{name}")
    for name in dict.fromkeys(name.split("/")[0] for name, _, _ in LINUX):
        workshop.offer("User Cache", f".cache/{name}")

    # What a clean-up passes over: loose files, hidden folders, folders in which there is nothing.
    workshop.file("Library/Caches/loose.db", 64 * KIB)
    workshop.file(".cache/ksycoca5_en", 48 * KIB)
    workshop.tree("Library/Caches/.hidden.cache", MIB, 3)
    workshop.directory("Library/Caches/com.example.empty/with/folders/only")
    workshop.directory(".cache/empty")
