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


def make(workshop: Workshop) -> None:
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


def desktop_entry(name: str, program: str, icon: str) -> str:
    return (f"[Desktop Entry]\nType=Application\nName={name}\nExec=\"{program}\" %U\nIcon={icon}\n"
            f"StartupWMClass={icon}\nCategories=Network;WebBrowser;\n")
