"""What lies among caches and does not come back."""

from .workshop import KIB, Workshop

#: The folder that must not be offered, and the file in it for the sake of which.
KEPT = (
    (".cache/rclone", "vfs/drive/Thesis/unsent.tex"),
    (".cache/evolution", "calendar/1a2b/cache.db"),
    (".cache/kioexec", "krun/4711_0/Contract.odt"),
    (".cache/obexd", "holiday.jpg"),
    (".cache/huggingface", "token"),
    (".cache/keepassxc", "keepassxc.ini"),
    (".cache/ncspot", "librespot/credentials.json"),
    (".cache/zsh", "history"),
    (".cache/JetBrains", "PyCharm2026.2/LocalHistory/changes.storageData"),
    (".cache/pre-commit", "patch1763632800-4242"),
    (".cache/simple-scan", "autosaves/page-1.png"),
    (".cache/xournalpp", "autosaves/Lecture.xopp"),
    (".cache/duplicity", "home/full-signatures.sigtar.gpg"),
    (".cache/pypoetry", "virtualenvs/clock-py3.11/pyvenv.cfg"),
    (".cache/sessions", "xfce4-session-sample:0"),
    (".cache/tracker3", "files/meta.db"),
    (".var/app/org.rclone.Rclone/cache", "rclone/vfs/drive/unsent.txt"),
    ("snap/notes/common/.cache", "rclone/vfs/drive/unsent.txt"),
)


def make(workshop: Workshop) -> None:
    for folder, name in KEPT:
        workshop.document(f"{folder}/{name}", f"Only copy: {name}\n" * 20)
        workshop.file(f"{folder}/regenerable.bin", 300 * KIB)
        workshop.keep(folder)
    workshop.socket(".cache/ibus/dbus-4R2gXq1c")
    workshop.file(".cache/ibus/bus.bin", 4 * KIB)
    workshop.keep(".cache/ibus")
