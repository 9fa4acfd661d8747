"""The package as the build makes it."""

import os
import subprocess
from pathlib import Path

BUILD = Path(os.environ["QUILLMERE_BUILD"])
VERSION = os.environ["QUILLMERE_VERSION"]


def make(folder: Path) -> Path:
    """Makes the package of what is built, in that folder."""
    subprocess.run(["cpack", "--config", str(BUILD / "CPackConfig.cmake"), "-B", str(folder)],
                   cwd=folder, check=True, capture_output=True, text=True)
    (package,) = folder.glob("quillmere_*.deb")
    return package
