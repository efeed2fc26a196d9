"""Reads the project's Markdown and the names of TARNEX.h, for the scripts about documents."""

import re
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
HEADER = ROOT / "include" / "TARNEX.h"
EXPORTED_NAMES = ROOT / "tests" / "system" / "exported_names.txt"

FENCE = re.compile(r"^(```+|~~~+)")
HEADING = re.compile(r"^(#{1,6})\s+(.*?)\s*#*\s*$")
# A link's text may hold code spans; its target holds no blank.
LINK = re.compile(r"(?<!!)\[((?:[^\[\]`]|`[^`]*`)*)\]\(([^()\s]+)\)")
IMAGE = re.compile(r"!\[([^\[\]]*)\]\(([^()\s]+)\)")


def pages():
    """The Markdown files that users read."""
    return sorted((ROOT / "docs").glob("*.md")) + [ROOT / name for name in ("README.md", "CONTRIBUTING.md", "CHANGELOG.md")]


def lines_outside_code(text):
    """Yields (line number, line, whether it is prose): fences and what they hold are not."""
    fence = None
    for number, line in enumerate(text.splitlines(), 1):
        mark = FENCE.match(line)
        if fence is None and mark:
            fence = mark.group(1)
            yield number, line, False
        elif fence is not None:
            if line.strip() == fence:
                fence = None
            yield number, line, False
        else:
            yield number, line, not line.startswith("    ")


def slug(heading, taken):
    """The anchor that the repository's web view gives to a heading; `taken` counts the ones before it in the file."""
    plain = re.sub(r"[`*]", "", LINK.sub(r"\1", heading)).lower()
    anchor = re.sub(r"[^\w\- ]", "", plain).replace(" ", "-")
    count = taken.get(anchor, 0)
    taken[anchor] = count + 1
    return f"{anchor}-{count}" if count else anchor


def anchors(text):
    taken = {}
    return [
        slug(found.group(2), taken)
        for _, line, prose in lines_outside_code(text)
        if prose and (found := HEADING.match(line))
    ]


def exported_names():
    return EXPORTED_NAMES.read_text().split()


def documented_names():
    """The names that TARNEX.h offers to callers: functions, attributes, values and statuses."""
    return exported_names() + re.findall(r"^#define (TARNEX_\w+) +\S", HEADER.read_text(), re.M)
