"""The program's stored settings, written before it starts."""

import json
import plistlib
from pathlib import Path


def write(home: Path, language: str | None = None, program: Path | None = None, **settings) -> None:
    """`language` is its stored code; `settings` are fields of the settings record, such as theme="dark". With `program`
    that one counts as set up, and starts without its wizard."""
    values = {"appSettings": json.dumps(settings).encode()} if settings else {}
    if language:
        values["app.language"] = language
    if program:
        values |= {"hasSeenWelcome": True, "setup.installSignature": signature(program)}
    file = home / "Library/Preferences/com.veltrane.quillmere.plist"
    file.parent.mkdir(parents=True, exist_ok=True)
    file.write_bytes(plistlib.dumps(values, fmt=plistlib.FMT_BINARY))


def signature(program: Path) -> str:
    """What tells the version of the bundle around `program` from others."""
    values = plistlib.loads((program.parents[1] / "Info.plist").read_bytes())
    return f"{values['CFBundleShortVersionString']}|{values['CFBundleVersion']}"


def complete_setup(home: Path, program: Path) -> None:
    """Unless something is stored in `home` already, `program` starts there without its wizard."""
    is_bundled = len(program.parents) > 1 and (program.parents[1] / "Info.plist").exists()
    if is_bundled and home.is_dir() and not (home / "Library/Preferences/com.veltrane.quillmere.plist").exists():
        write(home, program=program)
