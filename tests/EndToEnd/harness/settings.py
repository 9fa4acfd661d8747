"""The program's stored settings, written before it starts."""

import json
import plistlib
from pathlib import Path


def write(home: Path, language: str | None = None, **settings) -> None:
    """`language` is its stored code; `settings` are fields of the settings record, such as theme="dark"."""
    values = {"appSettings": json.dumps(settings).encode()}
    if language:
        values["app.language"] = language
    file = home / "Library/Preferences/com.veltrane.quillmere.plist"
    file.parent.mkdir(parents=True, exist_ok=True)
    file.write_bytes(plistlib.dumps(values, fmt=plistlib.FMT_BINARY))
