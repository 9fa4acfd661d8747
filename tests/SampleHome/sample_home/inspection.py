"""A look at a sample home that was made before, and its end."""

import hashlib
import json
import os
import shutil
import stat
from pathlib import Path

from .world import ACCOUNT, MARKER


def account(folder: Path) -> dict:
    if not (folder / MARKER).is_file():
        raise ValueError(f"{folder} is no sample home")
    return json.loads((folder / ACCOUNT).read_text())


def damage(folder: Path) -> list[str]:
    """One line for each document that is missing or changed, and for each kept folder that is gone."""
    made = account(folder)
    lines = []
    for name, digest in sorted(made["untouchable"].items()):
        try:
            changed = hashlib.sha256((folder / name).read_bytes()).hexdigest() != digest
        except OSError:
            lines.append(f"missing: {name}")
            continue
        if changed:
            lines.append(f"changed: {name}")
    lines += [f"missing: {name}" for name in sorted(made["kept"]) if not os.path.lexists(folder / name)]
    return lines


def remove(folder: Path) -> None:
    if not (folder / MARKER).is_file():
        raise ValueError(f"{folder} is no sample home")
    descriptor = os.open(folder, os.O_RDONLY | os.O_DIRECTORY | os.O_NOFOLLOW)
    try:
        _open_up(descriptor)
    finally:
        os.close(descriptor)
    shutil.rmtree(folder)


def _open_up(folder: int) -> None:
    """Makes every folder below readable again. By descriptors, since some lie deeper than a path may be long."""
    with os.scandir(folder) as entries:
        names = [entry.name for entry in entries if entry.is_dir(follow_symlinks=False)]
    for name in names:
        os.chmod(name, stat.S_IRWXU, dir_fd=folder)
        below = os.open(name, os.O_RDONLY | os.O_DIRECTORY | os.O_NOFOLLOW, dir_fd=folder)
        try:
            _open_up(below)
        finally:
            os.close(below)
