#!/usr/bin/python3
"""Takes pictures of Professional Cleanup in every state that it knows, on a machine that exists only in memory, in both
themes, three languages and two sizes of the window."""

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

SCAN = "cleanup.startScan"
#: How the machine is, and the keys of the texts of the buttons that are pressed, for each state.
STATES = {
    "start": ([], []),
    "scanning": (["--hold", "/home/ada/.nvm/data"], [SCAN]),
    "list": ([], [SCAN]),
    "whole-list": (["--size", "1100x1000"], [SCAN]),
    "inventory": (["--size", "1100x1250"], [SCAN, "developer.installed.name"]),
    "cleaning": (["--hold", "/home/ada/Library/Application Support/Code/Cache"], [SCAN, "cleanup.clean"]),
    "report": ([], [SCAN, "cleanup.selectAll", "cleanup.clean"]),
    "nothing-found": (["--empty"], [SCAN]),
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
    command = [options.program, "--tab", "professionalCleanup", "--size", size, "--language", language,
               "--picture", file, *machine]
    command += ["--dark"] if theme == "dark" else []
    for key in presses:
        command += ["--press", texts[key].get(language, texts[key]["en"])]
    with tempfile.TemporaryDirectory() as runtime:
        environment = os.environ | {"QT_QPA_PLATFORM": "offscreen", "QT_QUICK_BACKEND": "software",
                                    "XDG_RUNTIME_DIR": runtime}
        result = subprocess.run(command, env=environment, capture_output=True, timeout=60, check=False)
    return None if result.returncode == 0 and file.exists() else file.name


if __name__ == "__main__":
    sys.exit(main())
