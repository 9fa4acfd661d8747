#!/usr/bin/python3
"""Takes pictures of every step of the setup wizard and every section of the settings, on a machine that exists only in
memory, in both themes, three languages and two sizes of the window."""

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

#: What the program is told, for each state. What is pressed is named by its key among the texts.
STATES = {
    "wizard-1-start": ["--wizard"],
    "wizard-1-drivers": ["--wizard", "--drivers"],
    "wizard-1-installing": ["--wizard", "--hold", "/usr/bin/osascript", "--press", "setup:drivers.install"],
    "wizard-1-failed": ["--wizard", "--refused", "--press", "setup:drivers.install"],
    "wizard-2-privacy": ["--wizard", "--press", "setup:next"],
    "wizard-3-terms": ["--wizard", *2 * ["--press", "setup:next"]],
    "wizard-4-copying": ["--wizard", *2 * ["--press", "setup:next"], "--press", "setup:install"],
    "wizard-4-portable": ["--wizard", "--no-filter", "--refused", *2 * ["--press", "setup:next"],
                          "--press", "setup:install", *6 * ["--press", "nothing:"]],
    "wizard-5-completed": ["--wizard", *2 * ["--press", "setup:next"], "--press", "setup:install",
                           *8 * ["--press", "nothing:"]],
    "settings": ["--tab", "settings"],
    "settings-drivers": ["--tab", "settings", "--drivers"],
    "settings-installing": ["--tab", "settings", "--hold", "/usr/bin/osascript", "--press", "strings:drivers.install"],
    "settings-failed": ["--tab", "settings", "--refused", "--press", "strings:drivers.install"],
    "settings-removal": ["--tab", "settings", "--press", "strings:settings.uninstall.title"],
    "settings-whole": ["--tab", "settings", "--tall"],
}


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=Path, help="where the pictures go")
    parser.add_argument("--program", type=Path, default=PROGRAM)
    parser.add_argument("--only", default="", help="takes those alone whose names hold this text")
    options = parser.parse_args()
    options.folder.mkdir(parents=True, exist_ok=True)
    names = [(theme, language, size, state) for theme in ("light", "dark") for language in ("en", "es", "ru")
             for size in ("1100x700", "900x600") for state in STATES]
    jobs = [name for name in names if options.only in "-".join(name)]
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        failed = [name for name in pool.map(lambda job: take(options, *job), jobs) if name]
    print("\n".join(failed), file=sys.stderr)
    return 1 if failed else 0


def told(state: str, language: str, size: str) -> list[str]:
    """What the program is told, with texts in the place of their keys."""
    words = []
    for word in STATES[state]:
        family, _, key = word.partition(":")
        if family in ("setup", "strings"):
            texts = json.loads((ROOT / f"assets/texts/{family}.json").read_text())
            word = texts[key][language]
        words.append(word)
    if "--tall" in words:
        words.remove("--tall")
        size = size.split("x")[0] + "x1600"
    return [*words, "--size", size]


def take(options, theme: str, language: str, size: str, state: str) -> str | None:
    """Gives the name of a picture that did not come about."""
    file = options.folder / f"{theme}-{language}-{size}-{state}.png"
    command = [options.program, "--language", language, "--after", "1500", "--picture", file,
               *told(state, language, size)]
    command += ["--dark"] if theme == "dark" else []
    with tempfile.TemporaryDirectory() as runtime:
        environment = os.environ | {"QT_QPA_PLATFORM": "offscreen", "QT_QUICK_BACKEND": "software",
                                    "XDG_RUNTIME_DIR": runtime}
        result = subprocess.run(command, env=environment, capture_output=True, timeout=60, check=False)
    if result.stderr:
        print(file.name, result.stderr.decode(errors="replace"), file=sys.stderr)
    return None if result.returncode == 0 and file.exists() else file.name


if __name__ == "__main__":
    sys.exit(main())
