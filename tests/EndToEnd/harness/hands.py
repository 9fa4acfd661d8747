"""Two ways to use Quillmere's window: by pointer, and by keyboard alone."""

from .accessible import Application, Item
from .desktop import wait_until
from .running import RunningProgram


# The one screen whose title is not the name of its destination shares it with a section of the sidebar. In each
# language a heading that it alone has.
HEADINGS = {
    "Dashboard": "System Health",
    "Panel de control": "Estado del sistema",
    "Панель управления": "Состояние системы",
}


def list_of(application: Application, row: str) -> Item:
    """The list that has such a row, the last of several. A program that has just begun shows others first."""
    def last():
        lists = [item for item in application.all("list") if application.all("list item", row, item)]
        return lists[-1] if lists else None
    return wait_until(last, f"a list with “{row}”")


class ByPointer:
    def __init__(self, program: RunningProgram):
        self._application = program.application
        self._person = program.person

    def open(self, destination: str) -> None:
        """Goes to a destination of the sidebar."""
        sidebar = list_of(self._application, destination)
        self._person.click(self._person.scroll_to(sidebar, "list item", destination))
        self._application.find("heading", HEADINGS.get(destination, destination))

    def press(self, button: str, of: str | None = None) -> None:
        """`of` says which, where each thing of a list has such a button."""
        self._person.click(self._application.find("push button", button, description=of))

    def pick(self, row: str) -> None:
        """Goes to a row of a list."""
        self._person.click(self._bring_up(row))

    def switch(self, row: str) -> None:
        """The switch of a row."""
        self._person.click(self._application.find("check box", within=self._bring_up(row)))

    def choose_for(self, row: str, entry: str) -> None:
        """An entry of the menu of a row."""
        self._person.click(self._bring_up(row), "right")
        self._person.click_on("menu item", entry)

    def _bring_up(self, row: str) -> Item:
        areas = [area for area in self._application.all("list") if self._application.all("list item", row, area)]
        return self._person.scroll_to(areas[-1], "list item", row) if areas else self._application.find("list item", row)

    def toggle(self, box: str) -> None:
        self._person.click_on("check box", box)

    def choose(self, button: str, entry: str) -> None:
        """An entry of the menu below a button."""
        self.press(button)
        self._person.click_on("menu item", entry)


class ByKeyboard:
    #: Presses of a key that surely lead past everything there is.
    FAR = 60

    def __init__(self, program: RunningProgram):
        self._application = program.application
        self._person = program.person

    def open(self, destination: str) -> None:
        selected = self._selected()
        self._person.reach("list item", selected.name)
        items = [item.name for item in self._application.all("list item") if item.extents.x == selected.extents.x]
        steps = items.index(destination) - items.index(selected.name)
        if steps:
            self._person.reach("list item", destination, "Down" if steps > 0 else "Up", at_most=self.FAR)
        self._application.find("heading", HEADINGS.get(destination, destination))

    def _selected(self) -> Item:
        """Where the sidebar is now. A program that has just begun says so a little later."""
        def known():
            return next((item for item in self._application.all("list item") if "selected" in item.states()), None)
        return wait_until(known, "a destination to be selected")

    def press(self, button: str, of: str | None = None) -> None:
        self._person.reach("push button", button, description=of)
        self._person.press("space")

    def pick(self, row: str) -> None:
        rows = list_of(self._application, row)
        names = [item.name for item in self._application.all("list item", within=rows)]
        self._person.reach_any("list item", names)
        here = self._application.focused()
        down = names.index(row) >= names.index(here.name)
        self._person.reach("list item", row, "Down" if down else "Up", at_most=self.FAR)

    def switch(self, row: str) -> None:
        self.pick(row)
        self._person.press("space")

    def choose_for(self, row: str, entry: str) -> None:
        self.pick(row)
        self._person.press("Menu")
        self._application.find("menu item", entry)
        self._person.reach("menu item", entry, "Down", at_most=10)
        self._person.press("Return")

    def toggle(self, box: str) -> None:
        self._person.reach("check box", box)
        self._person.press("space")

    def choose(self, button: str, entry: str) -> None:
        self.press(button)
        self._application.find("menu item", entry)
        self._person.reach("menu item", entry, "Down", at_most=10)
        self._person.press("Return")


WAYS = (ByPointer, ByKeyboard)
