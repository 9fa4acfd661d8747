"""Launch property lists, odd ones included, and the desktop's own autostart entries."""

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
    ("an array.plist", ["no", "dictionary"], False),
)


def make(workshop: Workshop) -> None:
    for name, content, binary in AGENTS:
        workshop.property_list(f"Library/LaunchAgents/{name}", content, binary)
    workshop.file("Library/LaunchAgents/old style.plist", '{ Label = "com.example.oldstyle"; Disabled = YES; }\n')
    workshop.file("Library/LaunchAgents/broken.plist", "<?xml version=\"1.0\"?><plist><dict><key>Label</key>")
    workshop.file("Library/LaunchAgents/notes.txt", "Not a property list.\n")
    workshop.property_list("Library/LaunchAgents/.hidden.plist", {"Label": "com.example.hidden"})
    workshop.document(".config/autostart/syncing.desktop",
                      "[Desktop Entry]\nType=Application\nName=Syncing\nExec=true\n")
