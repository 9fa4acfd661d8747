"""What programs left in the temporary folder, and what running ones still need there."""

from .workshop import KIB, Workshop

LEFTOVERS = (
    ("com.apple.launchd.unpacked", 260, 4),
    ("cargo-install9aKx2", 3100, 12),
    ("npm-84213-1f0c9d2e", 700, 9),
    ("pip-unpack-4t9gq2", 1600, 10),
    ("video-export-part", 5200, 3),
)


def make(workshop: Workshop) -> None:
    for name, size, files in LEFTOVERS:
        workshop.tree(f"$tmp/{name}", size * KIB, files)
        workshop.offer("Temporary Files", f"$tmp/{name}")
    workshop.file("$tmp/loose.tmp", 90 * KIB)

    for name, socket in (("ssh-XXXXXXQ8aTzL", "agent.4217"), ("tmux-1000", "default"), ("listening-17", "control")):
        workshop.socket(f"$tmp/{name}/{socket}")
        workshop.file(f"$tmp/{name}/state", 4 * KIB)
        workshop.keep(f"$tmp/{name}")
    workshop.document("$tmp/mozilla_ada0/Contract.odt", 26 * KIB)
    workshop.keep("$tmp/mozilla_ada0")
