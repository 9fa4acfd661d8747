"""Browsers that the desktop knows, with their caches and with the profiles that must stay."""

from .workshop import KIB, Workshop

#: Name, desktop entry, cache folders, profile folder.
BROWSERS = (
    ("Google Chrome", "google-chrome", ("Library/Caches/Google/Chrome",), "Library/Application Support/Google/Chrome"),
    ("Firefox", "firefox", ("Library/Caches/Firefox/Profiles",), "Library/Application Support/Firefox/Profiles"),
    ("Brave", "brave-browser", ("Library/Caches/BraveSoftware/Brave-Browser",),
     "Library/Application Support/BraveSoftware/Brave-Browser"),
    ("Microsoft Edge", "microsoft-edge", ("Library/Caches/Microsoft Edge",),
     "Library/Application Support/Microsoft Edge"),
    ("Opera", "opera", (), "Library/Application Support/com.operasoftware.Opera"),
)


#: The cache folder of each on this platform, the caches in it, and the folder of its profile.
LINUX = (
    (".cache/google-chrome", ("Default/Cache", "Default/Code Cache", "Profile 1/Cache"), ".config/google-chrome/Default"),
    (".cache/mozilla/firefox", ("8k2a1b3c.default-release/startupCache", "8k2a1b3c.default-release/thumbnails"),
     ".mozilla/firefox/8k2a1b3c.default-release"),
    (".cache/BraveSoftware/Brave-Browser", ("Default/Cache", "Default/Code Cache"),
     ".config/BraveSoftware/Brave-Browser/Default"),
    (".cache/microsoft-edge", ("Default/Cache",), ".config/microsoft-edge/Default"),
    (".cache/opera", ("Default/Cache", "Default/Code Cache"), ".config/opera/Default"),
    (".var/app/org.mozilla.firefox/cache/mozilla/firefox", ("c5d6e7f8.default-release/cache2",),
     ".var/app/org.mozilla.firefox/.mozilla/firefox/c5d6e7f8.default-release"),
)

#: What a profile holds that nothing may ever take, under the names of both families.
SECRETS = ("Bookmarks", "Cookies", "History", "Login Data", "Sessions/Session_1", "Local Storage/leveldb/000003.log",
           "places.sqlite", "cookies.sqlite", "logins.json", "key4.db", "sessionstore.jsonlz4")


def make(workshop: Workshop) -> None:
    make_of_linux(workshop)
    for position, (name, entry, caches, profile) in enumerate(BROWSERS):
        program = workshop.file(f".local/opt/{entry}/{entry}", "#!/bin/sh\nexec sleep 600\n")
        workshop.executable(program)
        workshop.file(f".local/share/applications/{entry}.desktop", desktop_entry(name, program.decode(), entry))
        for cache in caches:
            workshop.tree(cache, (3400 + 900 * position) * KIB, 12 + position)
            workshop.offer("User Cache", "/".join(cache.split("/")[:3]))
        workshop.document(f"{profile}/Default/Bookmarks", f'{{"browser": "{name}"}}\n')
        workshop.document(f"{profile}/Default/History", 40 * KIB)
        workshop.document(f"{profile}/Default/Cookies", 20 * KIB)


def make_of_linux(workshop: Workshop) -> None:
    for folder, caches, profile in LINUX:
        for position, cache in enumerate(caches):
            # Another family may have put caches there too.
            workshop.tree(f"{folder}/{cache}/of-browsers", (900 + 700 * position) * KIB, 8)
        parts = folder.split("/")
        if parts[0] == ".cache":
            workshop.offer("User Cache", "/".join(parts[:2]))
        else:
            workshop.offer("Container Cache", "/".join(parts[:4]))
        for secret in SECRETS:
            workshop.document(f"{profile}/{secret}", f"{profile}: {secret}\n")


def desktop_entry(name: str, program: str, icon: str) -> str:
    return (f"[Desktop Entry]\nType=Application\nName={name}\nExec=\"{program}\" %U\nIcon={icon}\n"
            f"StartupWMClass={icon}\nCategories=Network;WebBrowser;\n")
