"""The hands of whoever uses the program."""

import time

from .accessible import Application, Item
from .desktop import Desktop, wait_until


class Person:
    def __init__(self, desktop: Desktop, application: Application):
        self._desktop = desktop
        self._application = application

    def click(self, item: Item, button: str = "left") -> None:
        """Points at the middle of the item and clicks, once it has come to rest."""
        x, y = self._resting_centre(item)
        self._desktop.run("xdotool", "mousemove", "--sync", str(x), str(y), "click", {"left": "1", "right": "3"}[button])

    def click_on(self, role: str, name: str) -> None:
        self.click(self._application.find(role, name))

    def scroll_to(self, area: Item, role: str, name: str) -> Item:
        """Turns the wheel over the area until the whole item is inside it."""
        self.point_at(area)
        for button in ("5", "4"):
            for _ in range(40):
                item = next(iter(self._application.all(role, name, area)), None)
                if item and area.extents.contains(item.extents):
                    return item
                self._desktop.run("xdotool", "click", button)
                time.sleep(0.05)
        raise AssertionError(f"the wheel does not bring up the {role} “{name}”")

    def point_at(self, item: Item) -> None:
        x, y = self._resting_centre(item)
        self._desktop.run("xdotool", "mousemove", "--sync", str(x), str(y))

    def press(self, *keys: str) -> None:
        """Keys by their X names, such as "Tab", "shift+Tab", "Return"."""
        self._desktop.run("xdotool", "key", "--clearmodifiers", "--delay", "20", *keys)

    def type(self, text: str) -> None:
        self._desktop.run("xdotool", "type", "--delay", "20", text)

    def reach(self, role: str, name: str, key: str = "Tab", at_most: int = 60, description: str | None = None) -> Item:
        """Presses the key until the focus is there, as somebody without a pointer has to."""
        return self._reach(f"{role} “{name}”", key, at_most, lambda item: item.role == role and item.name == name
                           and description in (None, item.description))

    def reach_any(self, role: str, names: list[str]) -> Item:
        """The first of several things that Tab leads to."""
        return self._reach(f"{role} “{names[0]}” and its like", "Tab", 60,
                           lambda item: item.role == role and item.name in names)

    def _reach(self, goal: str, key: str, at_most: int, is_there) -> Item:
        passed = []
        for _ in range(at_most):
            item = self._application.focused()
            if item and is_there(item):
                return item
            passed.append(f"{item.role} “{item.name}” at {item.extents.x},{item.extents.y}" if item else "nothing")
            if len(passed) > 3 and len(set(passed[-4:])) == 1:
                break
            self.press(key)
            self._settle(item)
        raise AssertionError(f"{key} does not lead to the {goal}, but over:\n" + "\n".join(passed))

    def _settle(self, before: Item | None) -> None:
        """Gives the focus time to move; it need not."""
        def place(item):
            return item and (item.role, item.name, item.extents)
        start = place(before)
        try:
            wait_until(lambda: place(self._application.focused()) != start, "the focus to move", 1)
        except TimeoutError:
            pass

    def _resting_centre(self, item: Item) -> tuple[int, int]:
        places = [None]

        def rests():
            places.append(item.extents)
            return places[-1] == places[-2] and places[-1].width > 0
        wait_until(rests, f"the {item.role} “{item.name}” to come to rest")
        return places[-1].centre
