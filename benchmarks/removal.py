#!/usr/bin/env python3
"""Times deletion against rm -rf and trashing against gio trash, round by round on equal trees.

removal.py BUILD [FOLDER] [ROUNDS]

BUILD is a build folder with quillmere-remove and quillmere-trash. The trees are made in, and vanish with, a new folder
in FOLDER (default /var/tmp). Trust the ratios: each is the median of the rounds' own ratios.
"""

import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time


def write_files(folder, count, size):
    for number in range(count):
        with open(f"{folder}/file{number}", "wb") as file:
            file.write(b"x" * size)


def many_folders(root):
    for group in range(50):
        for folder in range(40):
            path = f"{root}/{group}/{folder}"
            os.makedirs(path)
            write_files(path, 10, 500)


def one_folder(root):
    os.makedirs(root)
    write_files(root, 20000, 100)


def chain(root):
    for number in range(40):
        path = f"{root}/{number}" + "/down" * 100
        os.makedirs(path)
        write_files(path, 5, 100)


TREES = {"20,000 files in 2,050 folders": many_folders, "20,000 files in one folder": one_folder,
         "40 chains of 100 folders": chain}


def settle():
    os.sync()
    time.sleep(0.2)


def timed(command, **options):
    settle()
    start = time.perf_counter()
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, **options)
    return time.perf_counter() - start


def deletion(build, base, rounds):
    programs = {"rm -rf": ["/bin/rm", "-rf"]}
    for threads in ("1", "2", "4"):
        programs[f"ours, {threads} threads"] = [f"{build}/benchmarks/quillmere-remove", threads]
    for title, make in TREES.items():
        seconds = {name: [] for name in programs}
        for turn in range(rounds):
            names = list(programs)
            for name in names[turn % len(names):] + names[:turn % len(names)]:
                tree = f"{base}/tree"
                make(tree)
                seconds[name].append(timed(programs[name] + [tree]))
                assert not os.path.lexists(tree), name
        print(f"| {title} | " + " | ".join(columns(seconds, "rm -rf")) + " |", flush=True)


def trashing(build, base, rounds):
    home = f"{base}/home"
    environment = dict(os.environ, HOME=home, XDG_DATA_HOME=f"{home}/.local/share")
    programs = {"gio trash": ["gio", "trash"], "ours": [f"{build}/tests/Platform/quillmere-trash", "trash"]}
    seconds = {name: [] for name in programs}
    for turn in range(rounds):
        for name in sorted(programs, reverse=turn % 2 == 1):
            items = []
            for number in range(500):
                item = f"{home}/cache/item{number}"
                os.makedirs(item)
                write_files(item, 1, 100)
                items.append(item)
            seconds[name].append(timed(programs[name] + ["--"] * (name == "gio trash") + items, env=environment))
            assert not os.listdir(f"{home}/cache"), name
            assert len(os.listdir(f"{home}/.local/share/Trash/info")) == 500, name
            shutil.rmtree(home)
    print("| 500 folders to the trash | " + " | ".join(columns(seconds, "gio trash")) + " |")


def columns(seconds, reference):
    for name, times in seconds.items():
        text = f"{name}: {statistics.median(times) * 1000:.0f} ms"
        if name != reference:
            ratio = statistics.median(r / t for r, t in zip(seconds[reference], times))
            text += f" ({ratio:.2f}x)"
        yield text


def main():
    build = os.path.abspath(sys.argv[1])
    rounds = int(sys.argv[3]) if len(sys.argv) > 3 else 9
    base = tempfile.mkdtemp(prefix="quillmere-removal-", dir=sys.argv[2] if len(sys.argv) > 2 else "/var/tmp")
    try:
        deletion(build, base, rounds)
        trashing(build, base, rounds)
    finally:
        shutil.rmtree(base, ignore_errors=True)


if __name__ == "__main__":
    main()
