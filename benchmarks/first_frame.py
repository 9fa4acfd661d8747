#!/usr/bin/python3
"""Measures how long a program takes from its start to its first finished frame, beside other programs of its kind from
Debian, in turns, each time on a screen and in a home of its own.

    cmake --preset benchmarks && cmake --build --preset benchmarks
    benchmarks/first_frame.py              # nine rounds

The screen's memory is read every few milliseconds. A frame is finished when nine tenths of what is drawn in it stand as
they stand once the program has come to rest; figures that move on do not count."""

import argparse
import os
import signal
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
WIDTH, HEIGHT, BYTES = 1280, 800, 4
PIECE = 64 * BYTES  # A piece of a row that is compared as a whole.
FINISHED = 0.9
REST = 6.0  # Seconds until a program that has started has come to rest.
STEP = 0.004


class Screen:
    """A screen without a window manager's delays, whose memory can be read as a file."""

    def __init__(self, folder: Path):
        reading, writing = os.pipe()
        self._server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", f"{WIDTH}x{HEIGHT}x24", "-nolisten", "tcp", "-fbdir",
             str(folder)], pass_fds=(writing,), stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as number:
            self.display = f":{number.readline().strip()}"
        self._memory = os.open(folder / "Xvfb_screen0", os.O_RDONLY)
        # The memory ends with the rows; a header of no fixed length stands before them.
        self._offset = os.fstat(self._memory).st_size - WIDTH * HEIGHT * BYTES

    def frame(self) -> bytes:
        return os.pread(self._memory, WIDTH * HEIGHT * BYTES, self._offset)

    def close(self) -> None:
        os.close(self._memory)
        self._server.terminate()
        self._server.wait()


def pieces(frame: bytes) -> list[bytes]:
    return [frame[at:at + PIECE] for at in range(0, len(frame), PIECE)]


def first_finished(command: list[str], folder: Path) -> float:
    """In seconds."""
    home, runtime, memory = folder / "home", folder / "run", folder / "screen"
    for each in (home, runtime, memory):
        each.mkdir(mode=0o700)
    screen = Screen(memory)
    environment = {"PATH": "/usr/bin:/bin", "LANG": "C.UTF-8", "HOME": str(home), "XDG_RUNTIME_DIR": str(runtime),
                   "DISPLAY": screen.display, "QT_QPA_PLATFORM": "xcb", "QT_QUICK_BACKEND": "software",
                   "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={folder}/none"}
    empty = screen.frame()
    began = time.monotonic()
    program = subprocess.Popen(["dbus-run-session", "--", *command], env=environment, start_new_session=True,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    seen = []
    last = empty
    try:
        while time.monotonic() - began < REST:
            now = screen.frame()
            if now != last:
                seen.append((time.monotonic() - began, now))
                last = now
            time.sleep(STEP)
    finally:
        os.killpg(program.pid, signal.SIGTERM)
        program.wait()
        screen.close()
    drawn = [at for at, (old, new) in enumerate(zip(pieces(empty), pieces(last))) if old != new]
    if not drawn:
        raise RuntimeError(f"{command[0]} shows nothing")
    final = pieces(last)
    for passed, frame in seen:
        parts = pieces(frame)
        if sum(parts[at] == final[at] for at in drawn) >= FINISHED * len(drawn):
            return passed
    raise RuntimeError(f"{command[0]} does not come to rest")


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", default=ROOT / "build/benchmarks/Quillmere.app/Contents/MacOS/quillmere", type=Path)
    parser.add_argument("--peer", default="stacer")
    parser.add_argument("--rounds", default=9, type=int)
    options = parser.parse_args()
    times = {str(options.program): [], options.peer: []}
    for _ in range(options.rounds):
        for name, measured in times.items():
            with tempfile.TemporaryDirectory(prefix="q-frame-") as folder:
                measured.append(first_finished([name], Path(folder)))
    ours, theirs = (statistics.median(measured) for measured in times.values())
    print(f"quillmere {1000 * ours:.0f} ms, {options.peer} {1000 * theirs:.0f} ms, load {os.getloadavg()[0]:.1f}")
    print(f"first finished frame over that of {options.peer}: {ours / theirs:.2f}, at most 0.75")
    return 0 if ours <= 0.75 * theirs else 1


if __name__ == "__main__":
    sys.exit(main())
