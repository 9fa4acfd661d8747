"""Child processes that end with the test, and nothing else that does."""

import ctypes
import os
import signal
import subprocess
from pathlib import Path

#: prctl(2): the signal that a child gets when its parent dies.
PR_SET_PDEATHSIG = 1

_libc = ctypes.CDLL(None, use_errno=True)


def _end_with_parent() -> None:
    _libc.prctl(PR_SET_PDEATHSIG, signal.SIGTERM)


class Processes:
    """What was started, each in a process group of its own, ended in the opposite order."""

    def __init__(self, logs: Path):
        self._logs = logs
        self._started: list[subprocess.Popen] = []
        logs.mkdir(parents=True, exist_ok=True)

    def start(self, command: list[str], environment: dict[str, str], name: str | None = None,
              **options) -> subprocess.Popen:
        """Standard output and error go to a log of this name, unless the options say otherwise."""
        with open(self.log(name or Path(command[0]).name), "ab") as log:
            options = {"stdin": subprocess.DEVNULL, "stdout": log, "stderr": log} | options
            process = subprocess.Popen(command, env=environment, start_new_session=True,
                                       preexec_fn=_end_with_parent, **options)
        self._started.append(process)
        return process

    def log(self, name: str) -> Path:
        return self._logs / f"{name}.log"

    def end(self, process: subprocess.Popen, patience: float = 10) -> int:
        """Asks the process and what it started to end, and makes them when they do not."""
        if process not in self._started:
            return process.wait()
        self._started.remove(process)
        for number in (signal.SIGTERM, signal.SIGKILL):
            if process.poll() is None:
                os.killpg(process.pid, number)
            try:
                return process.wait(patience)
            except subprocess.TimeoutExpired:
                continue
        raise RuntimeError(f"process {process.pid} does not end")

    def end_all(self) -> None:
        for process in reversed(list(self._started)):
            self.end(process)
