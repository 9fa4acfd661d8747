"""What a program shows, as a screen reader is told of it."""

import os
from dataclasses import dataclass

from .desktop import wait_until


def connect(environment: dict[str, str]):
    """The accessibility library, bound to the buses of this desktop for the rest of the process."""
    os.environ["DBUS_SESSION_BUS_ADDRESS"] = environment["DBUS_SESSION_BUS_ADDRESS"]
    os.environ["DISPLAY"] = environment["DISPLAY"]
    os.environ["XAUTHORITY"] = environment["XAUTHORITY"]
    import gi
    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi
    Atspi.init()
    return Atspi


@dataclass(frozen=True)
class Rectangle:
    x: int
    y: int
    width: int
    height: int

    @property
    def centre(self) -> tuple[int, int]:
        return self.x + self.width // 2, self.y + self.height // 2

    def contains(self, other: "Rectangle") -> bool:
        return (self.x <= other.x and other.x + other.width <= self.x + self.width
                and self.y <= other.y and other.y + other.height <= self.y + self.height)


class Item:
    """One thing on the screen. Asks the program anew at each look."""

    def __init__(self, library, node):
        self._library = library
        self._node = node

    @property
    def role(self) -> str:
        return self._node.get_role_name()

    @property
    def name(self) -> str:
        return self._node.get_name() or ""

    @property
    def description(self) -> str:
        return self._node.get_description() or ""

    @property
    def text(self) -> str:
        """What stands in a field."""
        return self._library.Text.get_text(self._node, 0, -1) if self._has("Text") else ""

    @property
    def value(self) -> float | None:
        return self._library.Value.get_current_value(self._node) if self._has("Value") else None

    def states(self) -> set[str]:
        """Such as "focused", "checked", "enabled", "showing"."""
        return {state.value_nick for state in self._node.get_state_set().get_states()}

    @property
    def extents(self) -> Rectangle:
        """On the screen, in pixels."""
        box = self._library.Component.get_extents(self._node, self._library.CoordType.SCREEN)
        return Rectangle(box.x, box.y, box.width, box.height)

    @property
    def parent(self) -> "Item | None":
        node = self._node.get_parent()
        return Item(self._library, node) if node else None

    def children(self) -> list["Item"]:
        nodes = (self._node.get_child_at_index(index) for index in range(self._node.get_child_count()))
        return [Item(self._library, node) for node in nodes if node]

    def descendants(self):
        """Itself and everything below it that is on the screen, from the top down."""
        yield self
        for child in self.children():
            if child.is_showing():
                yield from child.descendants()

    def _has(self, interface: str) -> bool:
        return interface in self._node.get_interfaces()

    def is_showing(self) -> bool:
        # What holds windows is itself nowhere on the screen.
        return self.role == "application" or "showing" in self.states()

    def outline(self, depth: int = 0) -> str:
        """The whole tree as indented lines, to be read when a test fails."""
        box = self.extents if self._has("Component") else Rectangle(0, 0, 0, 0)
        marks = " ".join(sorted(self.states() & {"focused", "checked", "selected", "disabled", "expanded"}))
        line = f"{'  ' * depth}{self.role} “{self.name}” {box.x},{box.y} {box.width}x{box.height} {marks}".rstrip()
        return "\n".join([line, *(child.outline(depth + 1) for child in self.children() if child.is_showing())])


class Application:
    """The accessible side of a running program."""

    def __init__(self, library, process_id: int):
        self._library = library
        self._process_id = process_id
        self.root = wait_until(self._find_root, "the program to say what it shows")

    def _find_root(self) -> Item | None:
        desktop = self._library.get_desktop(0)
        desktop.clear_cache()
        for index in range(desktop.get_child_count()):
            node = desktop.get_child_at_index(index)
            if node and node.get_process_id() == self._process_id:
                # Otherwise the library answers from memory, which it renews only in an event loop.
                node.set_cache_mask(self._library.Cache.NONE)
                return Item(self._library, node)
        return None

    def all(self, role: str | None = None, name: str | None = None, within: Item | None = None) -> list[Item]:
        """Everything on the screen of this role and with exactly this name."""
        try:
            return [item for item in (within or self.root).descendants()
                    if (role is None or item.role == role) and (name is None or item.name == name)]
        except self._library_error():
            # What vanishes while it is being asked is not there.
            return []

    def find(self, role: str | None = None, name: str | None = None, within: Item | None = None,
             patience: float = 20, description: str | None = None) -> Item:
        """The first such thing; waits for it to come."""
        def first():
            return next((item for item in self.all(role, name, within) if description in (None, item.description)), None)
        return wait_until(first,
                          f"a {role or 'thing'} named “{name}”", patience)

    def wait_gone(self, role: str | None = None, name: str | None = None, patience: float = 20) -> None:
        wait_until(lambda: not self.all(role, name), f"the {role or 'thing'} named “{name}” to go", patience)

    def focused(self) -> Item | None:
        """Of several things that contain each other and say that they have the focus, the innermost."""
        items = [item for item in self.all() if "focused" in item.states() and item.role != "frame"]
        return items[-1] if items else None

    def outline(self) -> str:
        try:
            return self.root.outline()
        except self._library_error() as problem:
            return f"(the program does not answer: {problem})"

    @staticmethod
    def _library_error():
        from gi.repository import GLib
        return GLib.Error
