#!/usr/bin/env python3
"""Times quillmere-large-files beside the programs of Debian that can look for large files, on trees made for it, in one
run: find and bfs, which ask every file as we do, fd, which does so with threads, and gdu and ncdu, which measure the tree
and leave the looking to the user.

    cmake --preset benchmarks && cmake --build --preset benchmarks
    apt-get install bfs fd-find gdu ncdu
    benchmarks/large_files.py

The trees stand in a temporary folder and are removed at the end. Wall time means something only on an idle machine: the
load at the start and at the end is printed with the table."""

import argparse
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile

from walk import DROP_CACHES, TREES, Run, count_calls, count_folders, drop_caches, median_ratio, peak_memory

LARGE = 50_000_000
#: Beside the folder that a tree consists of, so that they are found at its beginning and at its end.
LARGE_FILES = ("a film.mkv", "zz/deep/a disk.iso")
#: What holds no file that is large.
SMALL_FILES = ("nearly.bin",)

PEERS = {
    "find": ["find", None, "-type", "f", "-size", f"+{LARGE - 1}c"],
    "bfs": ["bfs", None, "-type", "f", "-size", f"+{LARGE - 1}c"],
    "fd": ["fdfind", "--hidden", "--no-ignore", "--type", "f", "--size", "+50mb", ".", None],
    "gdu": ["gdu", "-n", "-p", "-s", None],
    "ncdu": ["ncdu", "-0", "-x", "-o", "/dev/null", None],
}


def add_large_files(tree):
    for name in LARGE_FILES + SMALL_FILES:
        path = os.path.join(tree, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            os.posix_fallocate(file.fileno(), 0, LARGE + 1_000_000 if name in LARGE_FILES else LARGE // 2)


def commands(program, tree):
    found = {"us": [program, tree]}
    for name, words in PEERS.items():
        if shutil.which(words[0]):
            found[name] = [tree if word is None else word for word in words]
    return found


def lines(command):
    return sorted(subprocess.run(command, stdout=subprocess.PIPE, check=True, text=True).stdout.splitlines())


def row(tree, what, value, text="{:.2f}"):
    print(f"{tree:8} {what:48} {text.format(value):>12}", flush=True)


def measure(name, tree, program, options):
    peers = commands(program, tree)
    ours = lines(peers["us"])
    row(name, "files found, and by find", len(ours), "{} of " + str(len(lines(peers["find"]))))
    if ours != lines(peers["find"]):
        print(f"{name:8} DIFFERS from find", flush=True)
    runs = {peer: [] for peer in peers}
    for number in range(options.rounds + 1):
        for peer, command in peers.items():
            run = Run(command)
            if number > 0:  # The first round fills the cache.
                runs[peer].append(run)
    row(name, "our wall time in ms", 1000 * statistics.median(run.wall for run in runs["us"]))
    for peer in peers:
        if peer != "us":
            row(name, f"wall time of {peer} over ours, warm", median_ratio(runs[peer], runs["us"], "wall"))
            row(name, f"CPU time of {peer} over ours", median_ratio(runs[peer], runs["us"], "cpu"))
    with tempfile.TemporaryDirectory() as empty:
        least = peak_memory([program, empty])
    row(name, "memory added in MiB", (peak_memory(peers["us"]) - least) / 2**20)
    if shutil.which("strace"):
        row(name, "system calls, for each folder and file", count_calls(peers["us"])
            / (count_folders(tree) + len(lines(["find", tree, "-type", "f"]))))
    if options.cold and os.access(DROP_CACHES, os.W_OK):
        measure_cold(name, peers, options.cold)


def measure_cold(name, peers, rounds):
    runs = {peer: [] for peer in peers}
    for _ in range(rounds):
        for peer, command in peers.items():
            drop_caches()
            runs[peer].append(Run(command))
    for peer in peers:
        if peer != "us":
            row(name, f"wall time of {peer} over ours, cold", median_ratio(runs[peer], runs["us"], "wall"))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    here = pathlib.Path(__file__).resolve().parent
    parser.add_argument("--program", type=pathlib.Path,
                        default=here.parent / "build/benchmarks/benchmarks/quillmere-large-files")
    parser.add_argument("--in", dest="place", default=tempfile.gettempdir(), help="where the trees are made")
    parser.add_argument("--trees", default="small,flat,usr")
    parser.add_argument("--rounds", default=9, type=int)
    parser.add_argument("--cold", default=3, type=int, help="rounds with the page cache dropped; 0 for none")
    options = parser.parse_args()

    print(f"{os.cpu_count()} cores, load {os.getloadavg()[0]:.2f} at the start")
    for name in options.trees.split(","):
        root = tempfile.mkdtemp(prefix="quillmere-large-files-", dir=options.place)
        try:
            TREES[name](root)
            add_large_files(root)
            os.sync()
            measure(name, root, str(options.program), options)
        finally:
            subprocess.run(["rm", "-rf", "--", root], check=True)
    print(f"load {os.getloadavg()[0]:.2f} at the end")
    return 0


if __name__ == "__main__":
    sys.exit(main())
