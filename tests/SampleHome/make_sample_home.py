#!/usr/bin/python3
"""Makes a believable home full of rubbish, on which every button can be tried without risk."""

import argparse
import sys
from pathlib import Path

from sample_home import inspection, world


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=Path, help="made when it does not exist; must otherwise be empty")
    parser.add_argument("--size", choices=("small", "normal"), default="small",
                        help="small: less than 700 MB (default); normal: less than 1.5 GB")
    parser.add_argument("--seed", type=int, default=1, help="the same seed makes the same home (default 1)")
    parser.add_argument("--history", action="store_true", help="also makes records of earlier clean-ups")
    action = parser.add_mutually_exclusive_group()
    action.add_argument("--check", action="store_true",
                        help="says which documents of a home made before are missing or changed")
    action.add_argument("--remove", action="store_true", help="takes a home made before away again")
    options = parser.parse_args()

    try:
        if options.check:
            return report(inspection.damage(options.folder))
        if options.remove:
            inspection.remove(options.folder)
            return 0
        world.make(options.folder, size=options.size, seed=options.seed, earlier_runs=options.history)
    except (OSError, ValueError) as problem:
        print(f"make_sample_home.py: {problem}", file=sys.stderr)
        return 2
    print((options.folder / world.ENVIRONMENT).read_text(), end="")
    return 0


def report(damage: list[str]) -> int:
    for line in damage:
        print(line)
    return 1 if damage else 0


if __name__ == "__main__":
    sys.exit(main())
