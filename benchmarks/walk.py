#!/usr/bin/env python3
"""Measures the walk against Debian's du and gdu, side by side in one run.

walk.py BUILD [FOLDER] [ROUNDS]

BUILD is a build folder with quillmere-walk. The trees are made in, and vanish with, a new folder in FOLDER (default
/var/tmp). Each figure is the median of the rounds' own ratios, so that what else the machine does weighs on all alike;
trust wall time only on an idle machine.
"""

import os
import re
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


def small_files(root):
    for group in range(300):
        for folder in range(100):
            path = f"{root}/{group}/{folder}"
            os.makedirs(path)
            write_files(path, 10, 300)


def one_folder(root):
    os.makedirs(root)
    write_files(root, 200_000, 100)


def deep_chains(root):
    """Chains of 3,000 folders, far beyond the longest path that the kernel takes, with six files on every level."""
    os.makedirs(root)
    start = os.open(".", os.O_RDONLY)
    for chain in range(20):
        os.chdir(root)
        os.mkdir(str(chain))
        os.chdir(str(chain))
        for _ in range(3000):
            write_files(".", 3, 100)
            os.mkdir("down")
            os.chdir("down")
    os.fchdir(start)
    os.close(start)


def copy_of_usr(root):
    subprocess.run(["cp", "--archive", "--one-file-system", "/usr", root], check=True)


TREES = {"300,000 small files in 30,000 folders": small_files, "200,000 files in one folder": one_folder,
         "20 chains of 3,000 folders": deep_chains, "a copy of /usr": copy_of_usr}


def peers(build):
    return {"ours": [f"{build}/benchmarks/quillmere-walk"], "du -sl": ["du", "-sl"],
            "gdu": ["gdu", "--non-interactive", "--no-progress", "--no-cross"]}


def expected(tree):
    """Files and bytes by find, which enters folders one by one."""
    blocks = subprocess.run(["find", tree, "-xdev", "-type", "f", "-printf", "%b\\n"], check=True, capture_output=True).stdout
    counts = [int(line) for line in blocks.split()]
    return len(counts), 512 * sum(counts)


def answer(command, tree):
    text = subprocess.run(command + [tree], check=True, capture_output=True, text=True).stdout
    files, size = re.match(r"(\d+) files, (\d+) bytes", text).groups()
    return int(files), int(size)


def folders_of(tree):
    return len(subprocess.run(["find", tree, "-xdev", "-type", "d", "-printf", "d"], check=True, capture_output=True).stdout)


def system_calls(command, tree):
    text = subprocess.run(["strace", "--follow-forks", "--summary-only"] + command + [tree], check=True,
                          capture_output=True, text=True).stderr
    return int(re.search(r"^100\.00\s+\S+\s+\S*?\s*(\d+)", text, re.M).group(1))


def run(command, tree):
    """Wall seconds, CPU seconds and peak memory in KiB of one run."""
    start = time.perf_counter()
    process = subprocess.Popen(command + [tree], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    wall = time.perf_counter() - start
    process.returncode = os.waitstatus_to_exitcode(status)
    return wall, usage.ru_utime + usage.ru_stime, usage.ru_maxrss


def drop_caches():
    os.sync()
    try:
        with open("/proc/sys/vm/drop_caches", "w") as file:
            file.write("3\n")
        return True
    except OSError:
        return False


def rounds_of(programs, tree, rounds, prepare=lambda: None):
    results = {name: [] for name in programs}
    names = list(programs)
    for turn in range(rounds):
        for name in names[turn % len(names):] + names[:turn % len(names)]:
            prepare()
            results[name].append(run(programs[name], tree))
    return results


def ratio(results, peer, figure):
    """Median of peer / ours over the rounds."""
    return statistics.median(theirs[figure] / ours[figure] for ours, theirs in zip(results["ours"], results[peer]))


def report(title, tree, build, rounds):
    programs = peers(build)
    files, size = expected(tree)
    ours = answer(programs["ours"], tree)
    print(f"\n{title}: {files} files, {size} bytes by find; ours {'equal' if ours == (files, size) else ours}")
    calls = system_calls(programs["ours"], tree)
    most = files + 3 * folders_of(tree) + 500
    print(f"  system calls: {calls} of at most {most}")
    warm = rounds_of(programs, tree, rounds, lambda: None)
    print(f"  CPU time against du -sl: {1 / ratio(warm, 'du -sl', 1):.2f}")
    print(f"  wall time, warm: {ratio(warm, 'du -sl', 0):.2f} x faster than du -sl, {ratio(warm, 'gdu', 0):.2f} x than gdu")
    with tempfile.TemporaryDirectory() as empty:
        base = statistics.median(run(programs["ours"], empty)[2] for _ in range(5))
    print(f"  memory added by the walk: {(max(result[2] for result in warm['ours']) - base) / 1024:.1f} MiB")
    if drop_caches():
        cold = rounds_of({name: programs[name] for name in ("ours", "du -sl")}, tree, min(rounds, 3), drop_caches)
        print(f"  wall time, cold: {ratio(cold, 'du -sl', 0):.2f} x faster than du -sl")
    else:
        print("  wall time, cold: not measured, this machine does not let its page cache be dropped")


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    build = os.path.abspath(sys.argv[1])
    base = tempfile.mkdtemp(prefix="quillmere-walk-", dir=sys.argv[2] if len(sys.argv) > 2 else "/var/tmp")
    rounds = int(sys.argv[3]) if len(sys.argv) > 3 else 7
    print(f"{os.cpu_count()} cores, load {os.getloadavg()[0]:.1f}, {rounds} rounds")
    try:
        for title, make in TREES.items():
            tree = f"{base}/tree"
            make(tree)
            os.sync()
            report(title, tree, build, rounds)
            subprocess.run(["rm", "-rf", tree], check=True)
    finally:
        shutil.rmtree(base, ignore_errors=True)


if __name__ == "__main__":
    main()
