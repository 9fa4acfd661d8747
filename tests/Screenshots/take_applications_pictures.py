#!/usr/bin/python3
"""Takes pictures of Applications in every state that it knows, on a machine that exists only in memory, in both themes,
three languages and two sizes of the window."""

import argparse
import json
import os
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
PROGRAM = ROOT / "build/debug/tests/PretendProgram/quillmere-pretend"

UNINSTALL = "applications.uninstall"
CLEAR = "applications.clearData"
LONG = "An Image Manipulation Program of Uncommon Length"
#: How the machine is, and the names of rows and the keys of the texts of buttons that are pressed, for each state.
STATES = {
    "empty": (["--empty", "--no-filter"], []),
    "scanning": (["--hold", "/Applications/Sound Studio.app/Contents"], []),
    "list": ([], []),
    "leftovers": ([], ["Model Workshop"]),
    "self-contained": ([], ["Document Reader"]),
    "long-name": ([], [LONG]),
    "system": ([], ["Firefox"]),
    "blocked": ([], ["Painter", "applications.blockTraffic"]),
    "traffic-error": ([], ["Nameless", "applications.blockTraffic"]),
    "confirm-uninstall": ([], ["Painter", UNINSTALL]),
    "confirm-clear-running": ([], ["Model Workshop", CLEAR]),
    "uninstalling": (["--hold", "/Applications/Painter.app"], ["Painter", UNINSTALL, "applications.confirmUninstall"]),
    "cleared": ([], ["Painter", CLEAR, "applications.confirmClear"]),
}


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=Path, help="where the pictures go")
    parser.add_argument("--program", type=Path, default=PROGRAM)
    parser.add_argument("--only", default="", help="takes those alone whose names hold this text")
    options = parser.parse_args()
    texts = json.loads((ROOT / "assets/texts/strings.json").read_text())
    options.folder.mkdir(parents=True, exist_ok=True)
    jobs = [(options, texts, theme, language, size, state) for theme in ("light", "dark")
            for language in ("en", "es", "ru") for size in ("1100x700", "900x600") for state in STATES
            if options.only in f"{theme}-{language}-{size}-{state}"]
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        failed = [name for name in pool.map(lambda job: take(*job), jobs) if name]
    print("\n".join(failed), file=sys.stderr)
    return 1 if failed else 0


def take(options, texts, theme: str, language: str, size: str, state: str) -> str | None:
    """Gives the name of a picture that did not come about."""
    machine, presses = STATES[state]
    file = options.folder / f"{theme}-{language}-{size}-{state}.png"
    command = [options.program, "--tab", "applications", "--size", size, "--language", language, "--picture", file,
               *machine]
    command += ["--dark"] if theme == "dark" else []
    for press in presses:
        wording = texts.get(press)
        command += ["--press", wording.get(language, wording["en"]) if wording else press]
    with tempfile.TemporaryDirectory() as runtime:
        environment = os.environ | {"QT_QPA_PLATFORM": "offscreen", "QT_QUICK_BACKEND": "software",
                                    "XDG_RUNTIME_DIR": runtime}
        result = subprocess.run(command, env=environment, capture_output=True, timeout=60, check=False)
    return None if result.returncode == 0 and file.exists() else file.name


if __name__ == "__main__":
    sys.exit(main())
