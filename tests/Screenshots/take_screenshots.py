#!/usr/bin/python3
"""Takes a picture of every screen in both themes, three languages and two sizes, for looking at them."""

import argparse
import itertools
import json
import subprocess
import sys
import tempfile
from pathlib import Path

TESTS = Path(__file__).resolve().parent.parent
sys.path[:0] = [str(TESTS / "EndToEnd"), str(TESTS / "SampleHome")]
from harness import settings  # noqa: E402
from harness.desktop import Desktop  # noqa: E402
from harness.running import RunningProgram  # noqa: E402
from sample_home import inspection, world  # noqa: E402
from scenes import SCENES, Tour  # noqa: E402

THEMES = ("light", "dark")
LANGUAGES = ("en", "es", "ru")
SIZES = ("1100x700", "900x600")
PROGRAM = TESTS.parent / "build/debug/Quillmere.app/Contents/MacOS/quillmere"


def main() -> int:
    options = arguments()
    texts = json.loads((TESTS.parent / "assets/texts/strings.json").read_text())
    desktop = Desktop()
    problems = []
    try:
        for theme, language, size in itertools.product(options.themes, options.languages, options.sizes):
            folder = options.folder / f"{theme}-{language}-{size}"
            words = {key: row.get(language, row["en"]) for key, row in texts.items()}
            problems += shoot(desktop, options, folder, words, theme, language, size)
            if options.sheets:
                make_sheet(folder)
    finally:
        desktop.close()
    print("\n".join(problems), file=sys.stderr)
    return 1 if problems else 0


def arguments() -> argparse.Namespace:
    def several(known):
        return lambda text: [choice for choice in known if choice in text.split(",")]
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=Path, help="where the pictures go, one folder for each theme, language and size")
    parser.add_argument("--program", type=Path, default=PROGRAM)
    parser.add_argument("--themes", type=several(THEMES), default=THEMES, metavar=",".join(THEMES))
    parser.add_argument("--languages", type=several(LANGUAGES), default=LANGUAGES, metavar=",".join(LANGUAGES))
    parser.add_argument("--sizes", type=several(SIZES), default=SIZES, metavar=",".join(SIZES))
    parser.add_argument("--scenes", type=several(SCENES), default=list(SCENES), metavar=",".join(SCENES))
    parser.add_argument("--sheets", action="store_true", help="also puts each folder's pictures on one sheet")
    return parser.parse_args()


def shoot(desktop: Desktop, options, folder: Path, words: dict[str, str], theme: str, language: str,
          size: str) -> list[str]:
    """All scenes in one run of the program on a home of its own. A scene that fails is named and passed over."""
    problems = []
    with tempfile.TemporaryDirectory(prefix="q-home-", dir="/tmp") as parent:
        made = Path(parent, "made")
        world.make(made, earlier_runs=True)
        try:
            settings.write(made / "home", language, options.program, theme=theme)
            program = RunningProgram(desktop, [str(options.program)], world.environment(made), folder=made / "home")
            program.resize(*map(int, size.split("x")))
            tour = Tour(program, words, lambda name: program.picture(folder / f"{name}.png"))
            for name in options.scenes:
                try:
                    SCENES[name](tour)
                except (AssertionError, StopIteration, TimeoutError) as problem:
                    problems.append(f"{folder.name}: {name}: {problem}")
                    program.picture(folder / f"{name}-failed.png")
            program.end()
        finally:
            inspection.remove(made)
    return problems


def make_sheet(folder: Path) -> None:
    pictures = sorted(str(file) for file in folder.glob("*.png"))
    subprocess.run(["montage", *pictures, "-tile", "3x", "-geometry", "700x+8+8", "-background", "#808080",
                    str(folder.with_suffix(".sheet.png"))], check=True)


if __name__ == "__main__":
    sys.exit(main())
