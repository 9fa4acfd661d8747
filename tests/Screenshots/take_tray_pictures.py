#!/usr/bin/python3
"""Takes pictures of the status item in an X11 tray, and of its menu, for looking at them."""

import argparse
import sys
import time
from pathlib import Path

TESTS = Path(__file__).resolve().parent.parent
sys.path[:0] = [str(TESTS / "EndToEnd")]
from harness.desktop import Desktop  # noqa: E402

PROGRAM = TESTS.parent / "build/debug/tests/StatusItemSheet/quillmere-status-item-sample"
PANELS = {"light": "0xEFF0F1", "dark": "0x232629"}
TITLES = ("", "7%", "42%", "100%")
WIDTH, HEIGHT = 700, 480
SIDE = 24


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=Path, help="where the pictures go")
    parser.add_argument("--program", type=Path, default=PROGRAM)
    options = parser.parse_args()
    for name, tint in PANELS.items():
        desktop = Desktop(width=WIDTH, height=HEIGHT)
        try:
            shoot(desktop, options, name, tint)
        finally:
            desktop.close()
    return 0


def shoot(desktop: Desktop, options, name: str, tint: str) -> None:
    environment = {**desktop.environment, "QT_QPA_PLATFORM": "xcb"}
    # The items come first: they have to appear by themselves when the tray does.
    for title in TITLES:
        desktop.processes.start([str(options.program), title], environment)
    time.sleep(1)
    desktop.processes.start(["trayer", "--edge", "bottom", "--align", "right", "--widthtype", "request", "--heighttype",
                             "pixel", "--height", str(SIDE), "--transparent", "true", "--alpha", "0", "--tint", tint],
                            environment)
    time.sleep(2)
    desktop.picture(options.folder / f"tray-{name}.png")
    for button, click in (("1", "left"), ("3", "right")):
        desktop.run("xdotool", "mousemove", str(WIDTH - SIDE // 2), str(HEIGHT - SIDE // 2), "click", button)
        time.sleep(1)
        desktop.picture(options.folder / f"tray-{name}-{click}-click.png")
        desktop.run("xdotool", "key", "Escape")
        time.sleep(0.5)


if __name__ == "__main__":
    sys.exit(main())
