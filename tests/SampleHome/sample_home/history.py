"""Records of earlier clean-ups."""

import json
import uuid

from .workshop import DAY, TODAY, Workshop

#: Seconds between 1970 and 2001, from which the records count.
REFERENCE = 978307200

#: Days ago, kind, found, cleaned, removed, skipped, errors, categories.
RECORDS = (
    (1, "safeCleanup", 1_842_336_768, 1_731_190_784, 61, 2, ("Failed to clean Proton: Permission denied",),
     ("User Cache", "User Logs", "Container Cache", "Temporary Files")),
    (3, "browserCleanup", 412_090_368, 412_090_368, 3, 0, (), ("Browser Cache",)),
    (9, "safeCleanup", 96_468_992, 0, 0, 14, (), ("User Logs",)),
    (31, "safeCleanup", 7_516_192_768, 7_516_192_768, 118, 0, (), ("User Cache",)),
)


def make(workshop: Workshop) -> None:
    records = []
    for age, kind, found, cleaned, removed, skipped, errors, categories in RECORDS:
        records.append({
            "id": str(uuid.UUID(bytes=workshop.random.randbytes(16), version=4)).upper(),
            "date": TODAY - age * DAY - REFERENCE + 0.25,
            "operationType": kind,
            "foundSize": found,
            "cleanedSize": cleaned,
            "filesRemoved": removed,
            "filesSkipped": skipped,
            "errors": list(errors),
            "categoriesAffected": list(categories),
            "status": "completed",
        })
    workshop.file("Library/Application Support/Quillmere/history.json", json.dumps(records))
