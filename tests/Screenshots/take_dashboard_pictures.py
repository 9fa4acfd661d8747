#!/usr/bin/python3
"""Takes pictures of the dashboard in every state that it knows, on a machine that exists only in memory, in both themes
and three languages, and puts those of a theme and language on one sheet."""

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

#: How the machine is, and the keys of the texts of the buttons that are pressed, for each state.
STATES = {
    "good": ([], []),
    "needs-attention": (["--memory", "84"], []),
    "critical": (["--disk", "93", "--memory", "88", "--processors", "91"], []),
    "cleaning": ([], ["dashboard.cleanCaches"]),
    "optimizing": ([], ["dashboard.fastBoost"]),
    "refused": (["--no-filter"], ["traffic.eco"]),
    "question": ([], ["resource.forceQuit"]),
    "switched-on": (["--size", "1100x1300"], ["traffic.eco", "keepAwake.trayOff", "resource.showMore"]),
    "small": (["--size", "900x600"], []),
    "small-whole": (["--size", "900x1300"], []),
}


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=Path, help="where the pictures go")
    parser.add_argument("--program", type=Path, default=PROGRAM)
    options = parser.parse_args()
    texts = json.loads((ROOT / "assets/texts/strings.json").read_text())
    options.folder.mkdir(parents=True, exist_ok=True)
    jobs = [(options, texts, theme, language, state)
            for theme in ("light", "dark") for language in ("en", "es", "ru") for state in STATES]
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        failed = [name for name in pool.map(lambda job: take(*job), jobs) if name]
    print("\n".join(failed), file=sys.stderr)
    return 1 if failed else 0


def take(options, texts, theme: str, language: str, state: str) -> str | None:
    """Gives the name of a picture that did not come about."""
    machine, presses = STATES[state]
    file = options.folder / f"{theme}-{language}-{state}.png"
    command = [options.program, "--language", language, "--picture", file, *machine]
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
