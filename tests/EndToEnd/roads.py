"""What a person sets out to do, step by step, whichever way they use the window and whatever machine is behind it."""

from harness.accessible import Application
from harness.desktop import wait_until
from harness.running import RunningProgram


def scan(program: RunningProgram, hands, screen: str = "Safe Cleanup") -> None:
    """From anywhere to the list of what may be cleaned."""
    hands.open(screen)
    hands.press("Start Scan")
    program.application.find("push button", "Clean")
    program.application.wait_gone("dialog", "Scanning...")


def clean(program: RunningProgram, hands) -> dict[str, str]:
    """Cleans what is selected in the list and gives the figures of the report, by their labels."""
    hands.press("Clean")
    program.application.find("heading", "Cleanup Report", patience=60)
    figures = report(program.application)
    hands.press("Done")
    program.application.wait_gone("heading", "Cleanup Report")
    program.application.wait_gone("dialog", "Scanning...")
    return figures


def report(application: Application) -> dict[str, str]:
    labels = ("Space Freed", "Files Removed", "Files Skipped")
    texts = (item.name.partition(": ") for item in application.all("label"))
    return {label: figure for label, _, figure in texts if label in labels}


def history(program: RunningProgram, hands) -> list[str]:
    """The records on the History screen, each as one line."""
    hands.open("History")
    program.application.find("push button", "Export")
    return [item.name for item in program.application.all("list item") if ", " in item.name]


def export(program: RunningProgram, hands, kind: str) -> None:
    """Saves the history as "CSV" or "JSON" under the name and in the folder that the save panel proposes."""
    hands.choose("Export", f"Export to {kind}")
    button = wait_until(lambda: save_button(program.application), "the save panel")
    hands.press(button)


def cancel_export(program: RunningProgram, hands, kind: str) -> None:
    """Comes as far as the save panel, and thinks better of it."""
    hands.choose("Export", f"Export to {kind}")
    button = wait_until(lambda: save_button(program.application), "the save panel")
    hands.press("Cancel")
    program.application.wait_gone("push button", button)


def clear_history(program: RunningProgram, hands) -> None:
    hands.press("Delete")
    hands.press("Clear All")
    program.application.find("label", "No history available")


def save_button(application: Application) -> str | None:
    """What the button of the save panel says, which is the desktop's choice."""
    names = [item.name for item in application.all("push button") if item.name in ("Open", "Save")]
    return names[0] if names else None
