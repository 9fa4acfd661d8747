#!/usr/bin/env python3
"""Times deletion against rm -rf and trashing against gio trash, round by round on equal trees.

    cmake --preset benchmarks && cmake --build --preset benchmarks
    benchmarks/removal.py

Trust the ratios, theirs over ours: each is the median of the rounds' own ratios."""

import argparse
import os
import pathlib
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

# How many times sooner than rm -rf each number of threads is to be done.
TO_REACH = {"1": 1.1, "2": 1.7, "4": 2.5}


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
    for threads in TO_REACH:
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
        print_rows(title, seconds, "rm -rf", {f"ours, {threads} threads": least for threads, least in TO_REACH.items()})


def trashing(build, base, rounds):
    home = f"{base}/home"
    environment = dict(os.environ, HOME=home, XDG_DATA_HOME=f"{home}/.local/share")
    programs = {"gio trash": ["gio", "trash"], "ours": [f"{build}/benchmarks/quillmere-trash", "trash"]}
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
    print_rows("500 folders to the trash", seconds, "gio trash", {"ours": 1})


def print_rows(title, seconds, peer, least):
    for name, times in seconds.items():
        row = f"{title:30} {name:16} {statistics.median(times) * 1000:6.0f} ms"
        if name in least:
            ratio = statistics.median(theirs / ours for theirs, ours in zip(seconds[peer], times))
            row += f"   {ratio:.2f}, at least {least[name]}: {'reached' if ratio >= least[name] else 'MISSED'}"
        print(row, flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    here = pathlib.Path(__file__).resolve().parent
    parser.add_argument("--build", default=here.parent / "build/benchmarks", type=pathlib.Path)
    parser.add_argument("--in", dest="place", default="/var/tmp", help="where the trees are made")
    parser.add_argument("--rounds", default=9, type=int)
    options = parser.parse_args()
    print(f"{os.cpu_count()} cores, load {os.getloadavg()[0]:.2f} at the start")
    with tempfile.TemporaryDirectory(prefix="quillmere-removal-", dir=options.place) as base:
        deletion(options.build, base, options.rounds)
        trashing(options.build, base, options.rounds)


if __name__ == "__main__":
    main()
