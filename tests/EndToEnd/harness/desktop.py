"""A desktop of its own for one test program: screen, window manager, session bus and accessibility bus."""

import os
import shutil
import subprocess
import tempfile
import time
from pathlib import Path

from .processes import Processes


class Desktop:
    """One for each test process: the accessibility library holds on to the first bus that it sees."""

    def __init__(self, width: int = 1400, height: int = 900):
        # Short, since the names of sockets may have 108 bytes at most.
        self.folder = Path(tempfile.mkdtemp(prefix="q-e2e-", dir="/tmp"))
        self.processes = Processes(self.folder / "logs")
        self.environment = self._clean_environment()
        try:
            self._start_screen(width, height)
            self._start_buses()
        except BaseException:
            self.close()
            raise

    def close(self) -> None:
        self.processes.end_all()
        shutil.rmtree(self.folder, ignore_errors=True)

    def run(self, *command: str) -> str:
        """Runs a small tool on this desktop to its end and gives what it prints."""
        result = subprocess.run(command, env=self.environment, capture_output=True, text=True, timeout=30, check=True)
        return result.stdout

    def run_or_nothing(self, *command: str) -> str:
        """The same for a tool that answers with a failure when it finds nothing."""
        result = subprocess.run(command, env=self.environment, capture_output=True, text=True, timeout=30, check=False)
        return result.stdout if result.returncode == 0 else ""

    def picture(self, file: Path, window: str = "root") -> None:
        """Saves what the screen shows, or one window by its number."""
        file.parent.mkdir(parents=True, exist_ok=True)
        self.run("import", "-silent", "-window", window, str(file))

    def _clean_environment(self) -> dict[str, str]:
        runtime = self.folder / "run"
        runtime.mkdir(mode=0o700)
        return {
            "HOME": str(self.folder),
            "LANG": "C.UTF-8",
            "PATH": "/usr/bin:/bin",
            "XAUTHORITY": str(self.folder / "Xauthority"),
            "XDG_RUNTIME_DIR": str(runtime),
            # Nothing that a test presses may reach the disks, the power switch or the passwords of this machine.
            "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={self.folder}/no-system-bus",
        }

    def _start_screen(self, width: int, height: int) -> None:
        reading, writing = os.pipe()
        with os.fdopen(reading) as number:
            try:
                # Otherwise the server begins anew when its only client goes, and who comes just then is not let in.
                self.processes.start(["Xvfb", "-displayfd", str(writing), "-screen", "0", f"{width}x{height}x24",
                                      "-nolisten", "tcp", "-noreset"], self.environment, pass_fds=(writing,))
            finally:
                os.close(writing)
            display = number.readline().strip()
        if not display:
            raise RuntimeError(self.processes.log("Xvfb").read_text())
        self.environment["DISPLAY"] = f":{display}"
        manager = self.processes.start(["openbox"], self.environment)
        # Windows that come before their manager does are taken over in whatever state they are just then.
        try:
            wait_until(lambda: self.run_or_nothing("xdotool", "get_desktop"), "the window manager")
        except TimeoutError as late:
            said = self.processes.log("openbox").read_text(errors="replace")
            raise TimeoutError(f"{late}, which ended with {manager.poll()} and said: {said}") from None

    def _start_buses(self) -> None:
        bus = self.processes.start(["dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1"],
                                   self.environment, stdout=subprocess.PIPE)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()
        self.processes.start(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"], self.environment)
        wait_until(lambda: "org.a11y.Bus" in self.run(
            "dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus", "/org/freedesktop/DBus",
            "org.freedesktop.DBus.ListNames"), "the accessibility bus")


def wait_until(condition, what: str, patience: float = 20):
    """Gives the first answer that is not empty, zero or false."""
    deadline = time.monotonic() + patience
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise TimeoutError(f"waited {patience:g} s for {what}")
        time.sleep(0.05)
