"""The whole home: folders, families, and the account of it."""

import json
import os
import shlex
from pathlib import Path

from . import (applications, browsers, caches, containers, developer, documents, history, kept, large_files, logs,
               odd_names, startup, temporary)
from .workshop import Workshop

#: Says that a folder is a sample home, so that it may be taken away as a whole.
MARKER = ".quillmere-sample-home"
#: What was made: see Workshop.
ACCOUNT = "account.json"
#: Lines NAME=value for a shell, under which a program sees this home and nothing else.
ENVIRONMENT = "environment"

FAMILIES = (documents, caches, logs, containers, temporary, developer, browsers, applications, startup, large_files,
            odd_names, kept)


def make(folder: Path, size: str = "small", seed: int = 1, earlier_runs: bool = False) -> Workshop:
    folder = Path(os.path.abspath(folder))
    folder.mkdir(mode=0o700, parents=True, exist_ok=True)
    if any(folder.iterdir()):
        raise ValueError(f"{folder} is not empty")
    (folder / MARKER).write_text("A made-up home. Nothing in it is of value.\n")

    workshop = Workshop(folder, size, seed)
    for name in ("home", "tmp", "run"):
        (folder / name).mkdir(mode=0o700)
    for family in FAMILIES:
        family.make(workshop)
    if earlier_runs:
        history.make(workshop)

    account = {"untouchable": workshop.untouchable, "offered": workshop.offered,
               "offered to professionals": workshop.offered_to_professionals, "kept": workshop.kept}
    (folder / ACCOUNT).write_text(json.dumps(account, indent=1, sort_keys=True) + "\n")
    lines = (f"{name}={shlex.quote(value)}\n" for name, value in environment(folder).items())
    (folder / ENVIRONMENT).write_text("".join(lines))
    return workshop


def environment(folder: Path) -> dict[str, str]:
    """Everything by which a program finds the user's folders. The trash lies in XDG_DATA_HOME."""
    home = folder / "home"
    return {
        "HOME": str(home),
        "TMPDIR": str(folder / "tmp"),
        "XDG_CACHE_HOME": str(home / ".cache"),
        "XDG_CONFIG_HOME": str(home / ".config"),
        "XDG_DATA_HOME": str(home / ".local/share"),
        "XDG_RUNTIME_DIR": str(folder / "run"),
        "XDG_STATE_HOME": str(home / ".local/state"),
    }
