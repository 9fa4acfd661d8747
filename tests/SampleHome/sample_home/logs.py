"""Logs, in both places where they lie."""

from .workshop import KIB, Workshop

MAC = (
    ("DiagnosticReports", 900, 12),
    ("Homebrew", 120, 4),
    ("CoreSimulator", 640, 8),
    ("com.example.Backup", 75, 3),
)
LINUX = (
    (".config/Code/logs/20261112T091502", 300, 9),
    (".config/Code/logs/20261119T084417", 410, 11),
    (".vscode-server/data/logs/20261101T120000", 90, 4),
    (".docker/desktop/log/host", 1300, 5),
    (".docker/desktop/log/vm", 800, 3),
    (".local/state/pipx/log", 35, 2),
)


def make(workshop: Workshop) -> None:
    for name, size, files in MAC:
        workshop.tree(f"Library/Logs/{name}", size * KIB, files)
        workshop.offer("User Logs", f"Library/Logs/{name}")
    for where, size, files in LINUX:
        workshop.tree(where, size * KIB, files)
        workshop.offer("User Logs", where)

    workshop.file("Library/Logs/fsck_hfs.log", "** a loose log file\n" * 200)
    workshop.document(".local/state/weechat/logs/irc.example.weechatlog", "10:02 ada: see you tomorrow\n")
