#!/usr/bin/python3
"""Holds the includes of src against the table of layers: arrows point down, and only down."""

import pathlib
import re
import unittest

SOURCES = pathlib.Path(__file__).resolve().parents[2] / "src"

# What a layer may include beside itself. The longest name that a file's path begins with is its layer.
MAY_INCLUDE = {
    "Values": set(),
    "Models": {"Values"},
    "Platform": {"Values"},
    "Utilities": {"Values", "Models", "Platform"},
    "Services": {"Values", "Models", "Platform", "Utilities", "App/AppState"},
    "ViewModels": {"Values", "Models", "Platform", "Utilities", "Services", "App/AppState"},
    "Views": {"Values", "Models", "Platform", "Utilities", "ViewModels", "Symbols", "App/AppState"},
    "Symbols": set(),
    "Platform/Linux": {"Values", "Platform", "Utilities"},
    "Platform/Linux/Network": {"Values", "Platform", "Platform/Linux"},
    "Platform/Linux/Tray": {"Values", "Platform", "Symbols"},
    "Tools": {"Values", "Platform", "Platform/Linux"},
    "App/AppState": {"Values", "Models", "Platform", "Utilities"},
    "App": {"Values", "Models", "Platform", "Utilities", "Services", "ViewModels", "Views", "Platform/Linux",
            "Platform/Linux/Network", "Platform/Linux/Tray", "App/AppState"},
}

INCLUDE = re.compile(r'^\s*#include "([^"]+)"', re.MULTILINE)


def layer_of(path):
    layers = [layer for layer in MAY_INCLUDE if re.match(rf"{layer}[/.]", path)]
    return max(layers, key=len, default=None)


def includes():
    for file in sorted(SOURCES.rglob("*")):
        if file.suffix in (".h", ".cpp", ".c"):
            name = file.relative_to(SOURCES).as_posix()
            for included in INCLUDE.findall(file.read_text()):
                yield name, included


class LayersTest(unittest.TestCase):
    def test_every_folder_of_sources_has_its_layer(self):
        self.assertEqual([name for name, _ in includes() if layer_of(name) is None], [])

    def test_every_include_carries_its_folder(self):
        self.assertEqual([pair for pair in includes() if layer_of(pair[1]) is None
                          and (SOURCES / pair[0]).with_name(pair[1]).exists()], [])

    def test_no_layer_includes_what_stands_above_it(self):
        upwards = []
        for name, included in includes():
            layer, below = layer_of(name), layer_of(included)
            if below is not None and below != layer and below not in MAY_INCLUDE[layer]:
                upwards.append((name, included))
        self.assertEqual(upwards, [])

    def test_the_table_itself_has_no_circle(self):
        def reached(layer, on_the_way):
            self.assertNotIn(layer, on_the_way)
            for below in MAY_INCLUDE[layer]:
                reached(below, on_the_way | {layer})

        for layer in MAY_INCLUDE:
            reached(layer, frozenset())

    def test_it_reads_the_sources_at_all(self):
        self.assertGreater(len(list(includes())), 1000)


if __name__ == "__main__":
    unittest.main()
