#!/usr/bin/env python3
"""Writes the Markdown pages, with the links and anchors of Doxygen, and the files that they link to into a folder. Doxygen
reads that folder and the two public headers.

Usage: docs_input.py FOLDER
"""

import re
import shutil
import sys
from pathlib import Path

import docs_text
from docs_text import ROOT


CODE_SPAN = re.compile(r"(?<!`)`([^`]+)`(?!`)")
NAMES = set(docs_text.documented_names())
# The groups of TARNEX.h, in its order. TARNEX_supply.h has none.
GROUPS = re.findall(r"@defgroup (\w+)", docs_text.HEADER.read_text())


def code_span(match):
    """Names of the header become links. Doxygen's own treatment of code spans changes quotes and dashes."""
    if match.group(1) in NAMES:
        return f"<code>@ref {match.group(1)}</code>"
    text = re.sub(r"([\\*@<>&#%_\"])", r"\\\1", match.group(1))
    return "<code>" + text.replace("--", "\\--").replace("::", "\\::") + "</code>"


def page_label(path):
    relative = path.relative_to(ROOT)
    if path == docs_text.HEADER:
        return path.name
    if relative == Path("docs/README.md"):
        return "documentation"
    return "page_" + re.sub(r"\W", "_", str(relative.with_suffix("") if relative.suffix == ".md" else relative))


def section_label(path, anchor):
    return page_label(path) + "__" + anchor.replace("-", "_")


def convert_page(path, linked_files, images, order):
    """Returns the page's text for Doxygen. Adds the images to `images`, the linked files that are not pages to
    `linked_files` and, for the index, the linked pages to `order`."""

    def target(match):
        text, link = match.groups()
        if "://" in link or link.startswith("mailto:"):
            return match.group(0)
        name, _, anchor = link.partition("#")
        file = (path.parent / name).resolve() if name else path
        if file.is_dir():
            return text
        if page_label(path) == "documentation" and not anchor:
            order.append(page_label(file))
        if file not in docs_text.pages() and file != docs_text.HEADER:
            linked_files.add(file)
        return f"[{text}](@ref {section_label(file, anchor) if anchor else page_label(file)})"

    def image(match):
        file = (path.parent / match.group(2)).resolve()
        images.add(file)
        return f"![{match.group(1)}]({file.name})"

    lines = []
    taken = {}
    for _, line, prose in docs_text.lines_outside_code(path.read_text()):
        if prose:
            heading = docs_text.HEADING.match(line)
            line = CODE_SPAN.sub(code_span, docs_text.LINK.sub(target, docs_text.IMAGE.sub(image, line)))
            if heading:
                anchor = docs_text.slug(heading.group(2), taken)
                label = section_label(path, anchor) if len(heading.group(1)) > 1 else page_label(path)
                line = f"{line} {{#{label}}}"
        lines.append(line)
    if page_label(path) == "documentation":
        lines += ["", "## Reference {#reference}", "", *(f"- @ref {group}" for group in GROUPS), "- @subpage files_shown"]
    return "\n".join(lines) + "\n"


def file_page(path):
    """A file that a page links to, as a page."""
    language = {".c": "c", ".cpp": "cpp", ".h": "cpp", ".xml": "xml", ".py": "py"}.get(path.suffix, "txt")
    relative = path.relative_to(ROOT)
    return f"# {relative} {{#{page_label(path)}}}\n\n````{{.{language}}}\n{path.read_text()}\n````\n"


def main():
    folder = Path(sys.argv[1])
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    linked_files, images, order = set(), set(), ["documentation"]
    texts = {page_label(path): convert_page(path, linked_files, images, order) for path in docs_text.pages()}
    (folder / "images").mkdir()
    for file in images:
        shutil.copy(file, folder / "images")
    forgotten = texts.keys() - order
    if forgotten:
        sys.exit(f"docs_input: docs/README.md does not link to {sorted(forgotten)}")
    # Doxygen lists pages in the order of its files.
    for number, label in enumerate(label for label in order if label in texts):
        (folder / f"{number:02}_{label}.md").write_text(texts[label])
    files = [f"- @subpage {page_label(path)}" for path in sorted(linked_files)]
    (folder / "94_files.md").write_text("\n".join(["# Files {#files_shown}", "", *files, ""]))
    for path in linked_files:
        (folder / f"95_{page_label(path)}.md").write_text(file_page(path))


main()
