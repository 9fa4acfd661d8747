"""What there is to see: each destination of the sidebar, and the states that a screen passes through.

A scene is a function that does what leads to its next states and calls `take` with a name at each.
"""

import time

from harness.hands import ByPointer


class Tour:
    """A person who walks through the program in its own language and takes pictures."""

    def __init__(self, program, texts: dict[str, str], take):
        self.application = program.application
        self.person = program.person
        self.hands = ByPointer(program)
        self.texts = texts
        self.take = take

    def open(self, tab: str) -> None:
        self.hands.open(self.texts[f"nav.{tab}"])
        self.rest()

    def press(self, key: str) -> None:
        self.hands.press(self.texts[key])

    def rest(self) -> None:
        """Lets movements come to their end."""
        time.sleep(0.6)


def plain(tab: str):
    def scene(tour: Tour) -> None:
        tour.open(tab)
        tour.take(tab)
    return scene


def cleanup(tab: str, first_row: str):
    """The road of a cleanup, with the row opened that has the text of the key `first_row`."""
    def scene(tour: Tour) -> None:
        tour.open(tab)
        tour.take(f"{tab}-start")
        tour.press("cleanup.startScan")
        tour.application.find("push button", tour.texts["cleanup.clean"])
        tour.application.wait_gone("dialog", tour.texts["cleanup.scanning"])
        tour.rest()
        tour.take(f"{tab}-list")

        row = next(item for item in tour.application.all("list item")
                   if item.name.startswith(tour.texts[first_row] + ", "))
        tour.person.click(row)
        tour.rest()
        tour.take(f"{tab}-expanded")

        tour.press("cleanup.clean")
        tour.application.find("heading", tour.texts["cleanup.report.title"], patience=60)
        tour.rest()
        tour.take(f"{tab}-report")
        tour.press("common.done")
        tour.application.wait_gone("heading", tour.texts["cleanup.report.title"])
        tour.application.wait_gone("dialog", tour.texts["cleanup.scanning"])
        tour.rest()
        tour.take(f"{tab}-after")
    return scene


def large_files(tour: Tour) -> None:
    tour.open("largeFiles")
    tour.take("largeFiles-start")
    tour.press("cleanup.startScan")
    tour.application.find("push button", tour.texts["largeFiles.column.name"])
    tour.rest()
    tour.take("largeFiles-list")

    tour.person.reach("list item", next(item.name for item in tour.application.all("list item") if "/Movies/" in item.name))
    tour.person.press("Menu")
    tour.application.find("menu item", tour.texts["largeFiles.action.trash"])
    tour.rest()
    tour.take("largeFiles-menu")
    tour.person.press("Down")
    tour.person.press("Return")
    tour.application.find("heading", tour.texts["largeFiles.trashConfirm"])
    tour.rest()
    tour.take("largeFiles-question")
    tour.person.press("Escape")
    tour.rest()
    tour.person.click_on("radio button", tour.texts["largeFiles.filter.media"])
    tour.press("largeFiles.column.name")
    tour.rest()
    tour.take("largeFiles-media")
    tour.person.click_on("radio button", tour.texts["largeFiles.filter.documents"])
    tour.rest()
    tour.take("largeFiles-documents")


def browsers(tour: Tour) -> None:
    tour.open("browsers")
    tour.application.find("push button", tour.texts["common.clean"])
    tour.rest()
    tour.take("browsers-list")

    tour.person.click(tour.application.find("check box", tour.texts["browsers.history"]))
    tour.rest()
    tour.take("browsers-warning")
    tour.press("common.clean")
    tour.application.find("heading", tour.texts["browsers.confirmTitle"])
    tour.rest()
    tour.take("browsers-sheet")
    tour.press("browsers.confirmDeletion")
    tour.application.wait_gone("heading", tour.texts["browsers.confirmTitle"])
    tour.rest()
    tour.take("browsers-cleaned")


def system_data(tour: Tour) -> None:
    tour.open("systemData")
    tour.take("systemData-scanning")
    tour.application.wait_gone("heading", tour.texts["systemData.analyzing"], patience=120)
    tour.rest()
    tour.take("systemData-list")


def startup(tour: Tour) -> None:
    tour.open("startup")
    tour.take("startup")
    switch = tour.application.find("check box", "com.example.backup")
    tour.person.click(switch)
    tour.rest()
    tour.take("startup-switched")
    tour.person.click(switch)
    tour.rest()


def applications(tour: Tour) -> None:
    tour.open("applications")
    tour.application.wait_gone("dialog", tour.texts["applications.scanning"])
    tour.rest()
    tour.take("applications-list")

    first = next(item for item in tour.application.all("list item") if item.name.startswith("Painter, "))
    tour.person.click(first)
    tour.rest()
    tour.take("applications-leftovers")

    tour.press("applications.clearData")
    tour.application.find("heading", tour.texts["applications.confirmClearTitle"])
    tour.rest()
    tour.take("applications-clear")
    tour.person.press("Escape")
    tour.press("applications.uninstall")
    tour.application.find("heading", tour.texts["applications.confirmUninstallTitle"])
    tour.rest()
    tour.take("applications-uninstall")
    tour.person.press("Escape")
    tour.rest()


def history(tour: Tour) -> None:
    tour.open("history")
    tour.take("history")
    record = next(item for item in tour.application.all("list item") if item.name.count(", ") > 2)
    tour.person.click(record)
    tour.rest()
    tour.take("history-expanded")

    tour.press("history.export")
    tour.rest()
    tour.take("history-export")
    tour.person.press("Escape")
    tour.press("common.delete")
    tour.application.find("heading", tour.texts["history.clearTitle"])
    tour.rest()
    tour.take("history-clear")
    tour.person.press("Escape")
    tour.rest()


SCENES = {
    "dashboard": plain("dashboard"),
    "safeCleanup": cleanup("safeCleanup", "cleanup.category.userCache"),
    "professionalCleanup": cleanup("professionalCleanup", "developer.vscode.name"),
    "largeFiles": large_files,
    "browsers": browsers,
    "systemData": system_data,
    "startup": startup,
    "applications": applications,
    "tools": plain("tools"),
    "history": history,
    "settings": plain("settings"),
}
