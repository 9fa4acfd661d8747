"""Launch property lists, odd ones included, and the desktop's own autostart entries."""

from datetime import datetime

from .workshop import Workshop

#: File name, contents, whether binary.
AGENTS = (
    ("com.example.backup.plist", {"Label": "com.example.backup", "RunAtLoad": True, "ProgramArguments": ["/bin/true"],
                                  "StartInterval": 3600}, False),
    ("com.example.updater.plist", {"Label": "com.example.updater", "RunAtLoad": True, "Disabled": True}, False),
    ("com.example.sync.plist", {"Label": "com.example.sync", "Disabled": False, "KeepAlive": True}, True),
    ("com.apple.quiet.plist", {"Label": "com.apple.quiet", "RunAtLoad": False}, False),
    ("number.plist", {"Label": "com.example.number", "Disabled": 1, "RunAtLoad": 1}, False),
    ("text.plist", {"Label": "com.example.text", "Disabled": "YES"}, False),
    ("without label.plist", {"RunAtLoad": True}, False),
    ("label is a number.plist", {"Label": 7}, True),
    ("empty dictionary.plist", {}, False),
    ("com.example.nightly.plist", {"Label": "com.example.nightly", "RunAtLoad": False, "unknown": {"B": [1.5, b"\0\1"]},
                                   "label": "not the label", "Since": datetime(2024, 1, 2, 3, 4, 5)}, False),
    ("an array.plist", ["no", "dictionary"], False),
)

#: File name and the lines behind the usual ones. The first four would start in any desktop or can be made to.
AUTOSTART = (
    ("syncing.desktop", "Name=Syncing\n"),
    ("messenger.desktop", "Name=Messenger\nName[ru]=Мессенджер\n# Kept as it is.\nX-GNOME-Autostart-enabled=false\n"),
    ("weather.desktop", "Name=Weather\nHidden=true\n\n[Desktop Action Refresh]\nName=Refresh\nExec=true\n"),
    ("clock.desktop", "Name=Clock\nNotShowIn=NoSuchDesktop;\nTryExec=/bin/sh\n"),
    ("elsewhere.desktop", "Name=For another desktop\nOnlyShowIn=NoSuchDesktop;\n"),
    ("uninstalled.desktop", "Name=Uninstalled\nTryExec=/nowhere/at-all\n"),
)


def make(workshop: Workshop) -> None:
    for name, content, binary in AGENTS:
        workshop.property_list(f"Library/LaunchAgents/{name}", content, binary)
    workshop.file("Library/LaunchAgents/old style.plist", '{ Label = "com.example.oldstyle"; Disabled = YES; }\n')
    workshop.file("Library/LaunchAgents/broken.plist", "<?xml version=\"1.0\"?><plist><dict><key>Label</key>")
    workshop.file("Library/LaunchAgents/notes.txt", "Not a property list.\n")
    workshop.property_list("Library/LaunchAgents/.hidden.plist", {"Label": "com.example.hidden"})
    for name, lines in AUTOSTART:
        workshop.document(f".config/autostart/{name}", f"[Desktop Entry]\nType=Application\nExec=true\n{lines}")
