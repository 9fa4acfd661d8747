#!/usr/bin/python3
"""Takes pictures of Startup Items in every state that it knows, on a machine that exists only in memory, in both themes,
three languages and two sizes of the window."""

import argparse
import os
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
PROGRAM = ROOT / "build/debug/tests/PretendProgram/quillmere-pretend"

#: What the program is told, for each state.
STATES = {
    "empty": ["--empty"],
    "loading": ["--hold", "/etc/xdg/autostart"],
    "list": [],
    "switched": ["--press", "org.example.backup"],
    "whole-list": ["--size", "1100x1180"],
    "failure": ["--size", "1100x1180", "--press", "org.example.vpn"],
    "failure-in-view": ["--press", "org.example.vpn"],
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


def take(options, theme: str, language: str, size: str, state: str) -> str | None:
    """Gives the name of a picture that did not come about."""
    file = options.folder / f"{theme}-{language}-{size}-{state}.png"
    command = [options.program, "--tab", "startup", "--size", size, "--language", language, "--picture", file,
               *STATES[state]]
    command += ["--dark"] if theme == "dark" else []
    with tempfile.TemporaryDirectory() as runtime:
        environment = os.environ | {"QT_QPA_PLATFORM": "offscreen", "QT_QUICK_BACKEND": "software",
                                    "XDG_RUNTIME_DIR": runtime}
        result = subprocess.run(command, env=environment, capture_output=True, timeout=60, check=False)
    return None if result.returncode == 0 and file.exists() else file.name


if __name__ == "__main__":
    sys.exit(main())
