"""A program at work on a desktop, in a home of its own."""

from pathlib import Path

from .accessible import Application, connect
from .desktop import Desktop, wait_until
from .person import Person


class RunningProgram:
    """Started when made, in `folder`. `variables` are added to the environment of the desktop."""

    def __init__(self, desktop: Desktop, command: list[str], variables: dict[str, str], name: str = "program",
                 folder: Path | None = None):
        self._desktop = desktop
        environment = desktop.environment | {
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "QT_QPA_PLATFORM": "xcb",
            "QT_QUICK_BACKEND": "software",
        } | variables
        self.name = name
        self.process = desktop.processes.start(command, environment, name, cwd=folder)
        self.application = Application(connect(desktop.environment), self.process.pid)
        self.person = Person(desktop, self.application)

    def end(self) -> int:
        return self._desktop.processes.end(self.process)

    def output(self) -> str:
        """What it wrote to standard output and standard error so far."""
        return self._desktop.processes.log(self.name).read_text(errors="replace")

    def window(self) -> str:
        """The number of its main window."""
        def number():
            found = self._desktop.run_or_nothing("xdotool", "search", "--onlyvisible", "--pid",
                                                 str(self.process.pid)).split()
            return max(found, key=self._area) if found else None
        return wait_until(number, "a window")

    def resize(self, width: int, height: int) -> None:
        window = self.window()
        self._desktop.run("xdotool", "windowsize", "--sync", window, str(width), str(height))

    def picture(self, file: Path) -> None:
        self._desktop.picture(file, self.window())

    def _area(self, window: str) -> int:
        geometry = dict(line.split("=") for line in
                        self._desktop.run("xdotool", "getwindowgeometry", "--shell", window).split())
        return int(geometry["WIDTH"]) * int(geometry["HEIGHT"])
