#!/usr/bin/python3
"""Measures what the program costs while it does nothing for anybody: CPU time and memory, hidden and with its dashboard
in sight, beside other programs of its kind from Debian, each on a screen and in a home of its own.

    cmake --preset benchmarks && cmake --build --preset benchmarks
    benchmarks/idle.py                 # a minute each
    benchmarks/idle.py --seconds 3600  # long enough to see memory grow

CPU is percent of one core. Memory is the proportional set (PSS): what is shared counts as the share."""

import argparse
import os
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.path[:0] = [str(ROOT / "tests/EndToEnd")]
from harness import settings  # noqa: E402
from harness.desktop import Desktop, wait_until  # noqa: E402

WARM_UP = 8  # Seconds until a program that has started has come to rest.


def cpu_seconds(pid: int) -> float:
    """Of all its threads, those that have ended too, and of the programs that it has started and seen the end of."""
    fields = Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()
    return sum(int(ticks) for ticks in fields[11:15]) / os.sysconf("SC_CLK_TCK")


def pss_mebibytes(pid: int) -> float:
    for line in Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines():
        if line.startswith("Pss:"):
            return int(line.split()[1]) / 1024
    raise RuntimeError("the kernel does not say")


class Program:
    """One program at rest on a desktop of its own."""

    def __init__(self, command: list[str], home: Path):
        self.desktop = Desktop(1400, 900)
        environment = self.desktop.environment | {
            "HOME": str(home), "QT_QPA_PLATFORM": "xcb", "QT_QUICK_BACKEND": "software", "LIBGL_ALWAYS_SOFTWARE": "1",
        }
        self.process = self.desktop.processes.start(command, environment, "program", cwd=home)
        self.window = wait_until(self._windows, "a window")[0]

    def _windows(self) -> list[str]:
        return self.desktop.run_or_nothing("xdotool", "search", "--onlyvisible", "--pid",
                                           str(self.process.pid), "--name", ".").split()

    def hide(self) -> None:
        self.desktop.run("xdotool", "windowactivate", "--sync", self.window)
        self.desktop.run("xdotool", "key", "ctrl+w")
        wait_until(lambda: not self._windows(), "the window to go")

    def measure(self, seconds: float) -> tuple[float, float, float]:
        """CPU in percent of a core, memory at the end, and by how much it has grown."""
        time.sleep(WARM_UP)
        memory, began, used = pss_mebibytes(self.process.pid), time.monotonic(), cpu_seconds(self.process.pid)
        time.sleep(seconds)
        passed = time.monotonic() - began
        after = pss_mebibytes(self.process.pid)
        return 100 * (cpu_seconds(self.process.pid) - used) / passed, after, after - memory

    def end(self) -> None:
        self.desktop.close()


def measure(name: str, command: list[str], seconds: float, hidden: bool = False) -> tuple[float, float, float]:
    with tempfile.TemporaryDirectory(prefix="quillmere-idle-") as home:
        settings.complete_setup(Path(home), Path(command[0]))
        program = Program(command, Path(home))
        try:
            if hidden:
                program.hide()
            figures = program.measure(seconds)
        finally:
            program.end()
    print(f"{name:28} {figures[0]:8.2f} {figures[1]:10.1f} {figures[2]:+8.2f}", flush=True)
    return figures


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", default=ROOT / "build/benchmarks/Quillmere.app/Contents/MacOS/quillmere", type=Path)
    parser.add_argument("--seconds", default=60, type=float)
    parser.add_argument("--peers", default="stacer,bleachbit")
    options = parser.parse_args()
    print(f"{'':28} {'CPU %':>8} {'PSS MiB':>10} {'growth':>8}")
    hidden = measure("quillmere, hidden", [str(options.program)], options.seconds, hidden=True)
    seen = measure("quillmere, dashboard", [str(options.program)], options.seconds)
    peers = {peer: measure(peer, [peer], options.seconds) for peer in options.peers.split(",") if peer}
    missed = [hidden[0] > 0.3, seen[0] > 2, hidden[1] > 65]
    if "stacer" in peers:
        missed.append(hidden[1] > 0.75 * peers["stacer"][1])
        print(f"memory over that of stacer: {hidden[1] / peers['stacer'][1]:.2f}, at most 0.75")
    if options.seconds >= 600:
        missed += [hidden[2] > 1, seen[2] > 1]
    print(f"{sum(missed)} of {len(missed)} figures missed: CPU hidden at most 0.3, in sight 2; memory at most 65,"
          " growth over ten minutes and more at most 1")
    return 1 if any(missed) else 0


if __name__ == "__main__":
    sys.exit(main())
