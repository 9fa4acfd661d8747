#!/usr/bin/env python3
"""Times quillmere-walk beside du and gdu on trees made for it, in one run, and says which figures are reached.

    cmake --preset benchmarks && cmake --build --preset benchmarks
    benchmarks/walk.py                 # everything; as root also with a cold cache
    benchmarks/walk.py --trees flat    # one tree

The trees (about 4 GB on disk) stand in a temporary folder and are removed at the end. Wall time means something only on
an idle machine: the load at the start and at the end is printed with the table."""

import argparse
import os
import pathlib
import random
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

DROP_CACHES = "/proc/sys/vm/drop_caches"


# --- The trees. Each function fills an empty folder.

def write(path, size, folder=None):
    descriptor = os.open(path, os.O_WRONLY | os.O_CREAT | os.O_EXCL, 0o644, dir_fd=folder)
    if size:
        os.write(descriptor, b"x" * size)
    os.close(descriptor)


def make_small(root):
    """300,000 small files in 30,000 folders."""
    chance = random.Random(1)
    for top in range(100):
        for middle in range(300):
            folder = f"{root}/top{top}/middle{middle}"
            os.makedirs(folder)
            for file in range(10):
                write(f"{folder}/file{file}", chance.randrange(1, 6000))


def make_flat(root):
    """200,000 files in one folder."""
    for file in range(200_000):
        write(f"{root}/a file of the folder {file}", 1 if file % 10 == 0 else 0)


def make_chains(root):
    """Six chains of 3,000 folders, each with a file: far beyond what a path can say."""
    for chain in range(6):
        folder = os.open(root, os.O_RDONLY | os.O_DIRECTORY)
        for level in range(3000):
            name = f"chain {chain}" if level == 0 else "a folder below"
            os.mkdir(name, dir_fd=folder)
            below = os.open(name, os.O_RDONLY | os.O_DIRECTORY, dir_fd=folder)
            os.close(folder)
            folder = below
            write("file", 100, folder)
        os.close(folder)


def make_usr(root):
    """The folders, links and names of /usr, each file with at most its first 4,096 bytes."""
    for folder, names, files in os.walk("/usr"):
        target = root + folder
        os.makedirs(target, exist_ok=True)
        for name in names + files:
            source = os.path.join(folder, name)
            try:
                if os.path.islink(source):
                    os.symlink(os.readlink(source), os.path.join(target, name))
                elif os.path.isfile(source):
                    write(os.path.join(target, name), min(os.path.getsize(source), 4096))
            except OSError:
                pass  # /usr may change meanwhile; both sides then measure what was copied.


TREES = {"small": make_small, "flat": make_flat, "chains": make_chains, "usr": make_usr}

# Wall time of du and of gdu over ours, and our CPU time over that of du.
TO_REACH = {
    "small": {"du": 2.2, "gdu": 3.0, "cpu": 0.90},
    "flat": {"du": 2.0, "gdu": 4.0, "cpu": None},
    # gdu goes by whole paths: it sees about a quarter of these files, so its time says nothing.
    "chains": {"du": 2.7, "gdu": None, "cpu": None},
    "usr": {"du": 2.3, "gdu": 3.0, "cpu": 0.82},
}

# Where folders are many and can be shared out, the calls of the system alone are timed too.
BROAD = ("small", "usr")


# --- Measuring.

class Run:
    def __init__(self, command):
        start = time.perf_counter()
        child = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        _, self.status, usage = os.wait4(child.pid, 0)
        self.wall = time.perf_counter() - start
        self.cpu = usage.ru_utime + usage.ru_stime
        child.returncode = os.waitstatus_to_exitcode(self.status)


class BareCalls:
    """What the calls that no walk can do without take by themselves."""

    def __init__(self, command):
        text = subprocess.run(command, stdout=subprocess.PIPE, check=True, text=True).stdout
        self.wall = float(re.fullmatch(r"\d+ files, ([\d.]+) ms\n", text).group(1)) / 1000


def peak_memory(command):
    # Not from wait4(2) of our own child: that counts the memory of this interpreter, which the child begins with.
    with tempfile.NamedTemporaryFile("r") as peak:
        subprocess.run(["time", "-f", "%M", "-o", peak.name, *command], stdout=subprocess.DEVNULL, check=True)
        return 1024 * int(peak.read())


def median_ratio(theirs, ours, what):
    """The median over the rounds of their figure over ours."""
    return statistics.median(getattr(a, what) / getattr(b, what) for a, b in zip(theirs, ours))


def answer_of_find(tree):
    blocks = subprocess.run(["find", tree, "-type", "f", "-printf", "%b\n"], stdout=subprocess.PIPE, check=True).stdout
    sizes = [int(line) for line in blocks.split()]
    return len(sizes), 512 * sum(sizes)


def answer_of_walk(walk, tree):
    text = subprocess.run([walk, tree], stdout=subprocess.PIPE, check=True, text=True).stdout
    return tuple(int(number) for number in re.fullmatch(r"(\d+) files, (\d+) bytes\n", text).groups())


def count_folders(tree):
    found = subprocess.run(["find", tree, "-type", "d", "-printf", "."], stdout=subprocess.PIPE, check=True).stdout
    return len(found)


def count_calls(command):
    with tempfile.NamedTemporaryFile("r") as summary:
        subprocess.run(["strace", "-f", "-c", "-o", summary.name, *command], stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, check=True)
        return int(re.search(r"^100\.00\s.*?(\d+)(?:\s+\d+)?\s+total$", summary.read(), re.M).group(1))


def percentile(numbers, share):
    return sorted(numbers)[min(int(len(numbers) * share), len(numbers) - 1)]


def stop_times(stop, tree, rounds, most):
    text = subprocess.run([stop, tree, str(rounds), str(most)], stdout=subprocess.PIPE, check=True, text=True).stdout
    return [float(line) for line in text.split()]


def drop_caches():
    os.sync()
    with open(DROP_CACHES, "w") as file:
        file.write("3")


# --- The table.

class Table:
    def __init__(self):
        self.missed = 0

    def miss(self, tree, why):
        self.missed += 1
        print(f"{tree:8} {why}", flush=True)

    def row(self, tree, what, value, bound, at_most=True, text="{:.2f}"):
        if bound is None:
            print(f"{tree:8} {what:42} {text.format(value):>12}")
            return
        reached = value <= bound if at_most else value >= bound
        self.missed += not reached
        relation = "at most" if at_most else "at least"
        print(f"{tree:8} {what:42} {text.format(value):>12}   {relation:8} {text.format(bound):>12}   "
              f"{'reached' if reached else 'MISSED'}", flush=True)


def measure_warm(table, name, tree, programs, rounds):
    walk, stop, calls = programs
    peers = {"us": [walk, tree], "du": ["du", "-sl", tree], "gdu": ["gdu", "-n", "-p", "-s", tree]}
    if not shutil.which("gdu"):
        del peers["gdu"]
        table.miss(name, "wall time of gdu over ours, warm: there is no gdu")
    runs = {peer: [] for peer in peers}
    bare = []
    for number in range(rounds + 1):
        for peer, command in peers.items():
            run = Run(command)
            if number > 0:  # The first round fills the cache.
                runs[peer].append(run)
        if number > 0 and name in BROAD:
            bare.append(BareCalls([calls, tree]))
    bounds = TO_REACH[name]
    for peer in ("du", "gdu"):
        if peer in runs:
            table.row(name, f"wall time of {peer} over ours, warm", median_ratio(runs[peer], runs["us"], "wall"),
                      bounds[peer], at_most=False)
    if bare:
        table.row(name, "our wall time over that of the bare calls", median_ratio(runs["us"], bare, "wall"), None)
    if bare and "gdu" in runs:
        table.row(name, "wall time of gdu over that of these calls", median_ratio(runs["gdu"], bare, "wall"), None)
    table.row(name, "CPU time over that of du", 1 / median_ratio(runs["du"], runs["us"], "cpu"), bounds["cpu"])
    table.row(name, "our wall time in ms", 1000 * statistics.median(run.wall for run in runs["us"]), None)
    with tempfile.TemporaryDirectory() as empty:
        least = statistics.median(peak_memory([walk, empty]) for _ in range(5))
    peak = max(peak_memory([walk, tree]) for _ in range(5))
    table.row(name, "memory added in MiB", (peak - least) / 2**20, 5)
    most = max(1, int(900 * statistics.median(run.wall for run in runs["us"])))
    times = stop_times(stop, tree, 200, most)
    table.row(name, f"flag to stop in ms, 95th of {len(times)}, warm", percentile(times, 0.95), 1)


def measure_cold(table, name, tree, programs, rounds):
    walk, stop, _ = programs
    ours, theirs, times = [], [], []
    for number in range(rounds):
        # In turns the first: below a virtual machine, whoever reads second may find the host's cache warm.
        turns = [(ours, [walk, tree]), (theirs, ["du", "-s", tree])]
        for runs, command in turns if number % 2 == 0 else reversed(turns):
            drop_caches()
            runs.append(Run(command))
        drop_caches()
        times += stop_times(stop, tree, 1, max(1, int(500 * ours[-1].wall)))
    table.row(name, "wall time of du -s over ours, cold", median_ratio(theirs, ours, "wall"), 3, at_most=False)
    if times:
        table.row(name, f"flag to stop in ms, 95th of {len(times)}, cold", percentile(times, 0.95), 30)


def measure(table, name, tree, programs, options):
    files, size = answer_of_find(tree)
    answer = answer_of_walk(programs[0], tree)
    table.row(name, f"bytes missed of {size} in {files} files", abs(answer[1] - size) + abs(answer[0] - files), 0,
              text="{:.0f}")
    measure_warm(table, name, tree, programs, options.rounds)
    if not shutil.which("strace"):
        table.miss(name, "system calls: there is no strace")
    else:
        table.row(name, "system calls", count_calls([programs[0], tree]), files + 3 * count_folders(tree) + 500,
                  text="{:.0f}")
    if options.cold == 0:
        return
    if os.access(DROP_CACHES, os.W_OK):
        measure_cold(table, name, tree, programs, options.cold)
    else:
        print(f"{name:8} cold: the page cache may not be dropped by this user")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    here = pathlib.Path(__file__).resolve().parent
    parser.add_argument("--programs", default=here.parent / "build/benchmarks/benchmarks", type=pathlib.Path)
    parser.add_argument("--in", dest="place", default=tempfile.gettempdir(), help="where the trees are made")
    parser.add_argument("--trees", default=",".join(TREES))
    parser.add_argument("--rounds", default=15, type=int)
    parser.add_argument("--cold", default=4, type=int, help="rounds with the page cache dropped; 0 for none")
    options = parser.parse_args()
    programs = [str(options.programs / name) for name in ("quillmere-walk", "quillmere-walk-stop",
                                                              "quillmere-walk-calls")]

    table = Table()
    print(f"{os.cpu_count()} cores, load {os.getloadavg()[0]:.2f} at the start")
    for name in options.trees.split(","):
        root = tempfile.mkdtemp(prefix="quillmere-walk-", dir=options.place)
        try:
            TREES[name](root)
            os.sync()
            measure(table, name, root, programs, options)
        finally:
            subprocess.run(["rm", "-rf", "--", root], check=True)
    print(f"load {os.getloadavg()[0]:.2f} at the end, {table.missed} figures missed")
    return 1 if table.missed else 0


if __name__ == "__main__":
    sys.exit(main())
