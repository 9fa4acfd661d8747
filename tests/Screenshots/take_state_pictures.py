#!/usr/bin/python3
"""Takes pictures of the screens in every state that states.py names, on a machine that exists only in memory, in both
themes, three languages and two sizes of the window."""

import argparse
import itertools
import json
import os
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from states import STATES

ROOT = Path(__file__).resolve().parents[2]
PROGRAM = ROOT / "build/debug/tests/PretendProgram/quillmere-pretend"
TEXTS = json.loads((ROOT / "assets/texts/strings.json").read_text())
TEXTS |= {f"setup:{key}": wording for key, wording in json.loads((ROOT / "assets/texts/setup.json").read_text()).items()}
LOOKS = list(itertools.product(("light", "dark"), ("en", "es", "ru"), ("1100x700", "900x600")))


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=Path, help="where the pictures go")
    parser.add_argument("--program", type=Path, default=PROGRAM)
    parser.add_argument("--only", default="", help="takes those alone whose names hold this text, as in startup-dark-es")
    options = parser.parse_args()
    options.folder.mkdir(parents=True, exist_ok=True)
    jobs = [(tab, state, look) for tab, states in STATES.items() for state in states for look in LOOKS
            if options.only in name_of(tab, state, look)]
    # A program waits much longer than it works.
    with ThreadPoolExecutor(3 * os.cpu_count()) as pool:
        failed = [name for name in pool.map(lambda job: take(options, *job), jobs) if name]
    print("\n".join(failed), file=sys.stderr)
    return 1 if failed else 0


def name_of(tab: str, state: str, look: tuple[str, str, str]) -> str:
    return "-".join((tab, *look, state))


def take(options, tab: str, state: str, look: tuple[str, str, str]) -> str | None:
    """Gives the name of a picture that did not come about."""
    theme, language, size = look
    machine, presses = STATES[tab][state]
    file = options.folder / f"{name_of(tab, state, look)}.png"
    opening = [] if tab == "wizard" else ["--tab", tab]
    command = [options.program, *opening, "--size", size, "--language", language, "--picture", file, *machine]
    command += ["--dark"] if theme == "dark" else []
    for press in presses:
        command += ["--press", ", ".join(in_language(part, language) for part in press.split(", "))]
    with tempfile.TemporaryDirectory() as runtime:
        environment = os.environ | {"QT_QPA_PLATFORM": "offscreen", "QT_QUICK_BACKEND": "software",
                                    "XDG_RUNTIME_DIR": runtime}
        result = subprocess.run(command, env=environment, capture_output=True, timeout=60, check=False)
    return None if result.returncode == 0 and file.exists() else file.name


def in_language(name: str, language: str) -> str:
    wording = TEXTS.get(name)
    return wording.get(language, wording["en"]) if wording else name


if __name__ == "__main__":
    sys.exit(main())
