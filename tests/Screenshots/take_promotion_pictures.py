#!/usr/bin/python3
"""Takes pictures of every kind of promotion, on a machine that exists only in memory, in both themes and three
languages, and puts those of a theme and language side by side."""

import argparse
import os
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
PROGRAM = ROOT / "build/debug/tests/PretendProgram/quillmere-pretend"

#: The file that the promotion stands on, by the name of the kind; none for no promotion at all.
KINDS = {
    "own": None,
    "drawn": "",
    "picture": "picture.jpg",
    "bright": "bright.png",
    "video": "video.jpg",
    "loading": "on-its-way.png",
    "missing": "missing.png",
    "movie": "movie.mp4",
}


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=Path, help="where the pictures go")
    parser.add_argument("--program", type=Path, default=PROGRAM)
    parser.add_argument("--size", default="900x600")
    options = parser.parse_args()
    options.folder.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory() as media:
        make_media(Path(media))
        jobs = [(options, Path(media), theme, language, kind) for theme in ("light", "dark")
                for language in ("en", "es", "ru") for kind in KINDS]
        with ThreadPoolExecutor(os.cpu_count()) as pool:
            failed = [name for name in pool.map(lambda job: take(*job), jobs) if name]
    for theme in ("light", "dark"):
        for language in ("en", "es", "ru"):
            files = [options.folder / f"{theme}-{language}-{kind}.png" for kind in KINDS]
            subprocess.run(["convert", *files, "-crop", "230x210+0+0", "+repage", "+append",
                            options.folder / f"sheet-{theme}-{language}.png"], check=True)
    print("\n".join(failed), file=sys.stderr)
    return 1 if failed else 0


def make_media(folder: Path) -> None:
    def draw(name: str, drawing: str) -> None:
        subprocess.run(["convert", "-size", "900x600", drawing, folder / name], check=True)

    draw("picture.jpg", "plasma:steelblue-orange")
    draw("video.jpg", "plasma:darkgreen-gold")
    draw("bright.png", "gradient:white-lightyellow")
    (folder / "missing.png").touch()
    (folder / "movie.mp4").touch()


def take(options, media: Path, theme: str, language: str, kind: str) -> str | None:
    """Gives the name of a picture that did not come about."""
    file = options.folder / f"{theme}-{language}-{kind}.png"
    command = [options.program, "--size", options.size, "--language", language, "--picture", file]
    command += ["--dark"] if theme == "dark" else []
    if KINDS[kind] is not None:
        command += ["--promotion", media / KINDS[kind] if KINDS[kind] else ""]
    with tempfile.TemporaryDirectory() as runtime:
        environment = os.environ | {"QT_QPA_PLATFORM": "offscreen", "QT_QUICK_BACKEND": "software",
                                    "XDG_RUNTIME_DIR": runtime}
        result = subprocess.run(command, env=environment, capture_output=True, timeout=120, check=False)
    return None if result.returncode == 0 and file.exists() else file.name


if __name__ == "__main__":
    sys.exit(main())
